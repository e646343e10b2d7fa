"""Background observers of single pixels of a screen, and of files."""

import ctypes
import os
import struct
import threading
from pathlib import Path

from harness.xlib import open_display

Z_PIXMAP = 2
IN_ACCESS, IN_OPEN = 0x1, 0x20
_libc = ctypes.CDLL(None, use_errno=True)


class Watch:
    """Observes something on its own thread, from __enter__ to __exit__."""

    def __init__(self):
        self._stop = threading.Event()

    def __enter__(self):
        self._thread = threading.Thread(target=self._watch)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._stop.set()
        self._thread.join()

    def _watch(self):
        """Runs until `_stop` is set."""
        raise NotImplementedError


class PixelWatch(Watch):
    """Reads a few points of an X screen, far more often than pictures of it could be taken."""

    def __init__(self, display, points):
        super().__init__()
        self._display = display
        self._points = points
        self.seen = [[] for _ in points]  # the colours of each point in order, without repetitions

    def _watch(self):
        with open_display(self._display) as (x11, connection):
            x11.XDefaultRootWindow.restype = ctypes.c_ulong
            x11.XGetImage.restype = ctypes.c_void_p
            x11.XGetPixel.restype = ctypes.c_ulong
            root = ctypes.c_ulong(x11.XDefaultRootWindow(connection))
            planes = ctypes.c_ulong(0xFFFFFF)
            while not self._stop.is_set():
                for seen, (x, y) in zip(self.seen, self._points):
                    image = ctypes.c_void_p(x11.XGetImage(connection, root, x, y, 1, 1, planes, Z_PIXMAP))
                    pixel = x11.XGetPixel(image, 0, 0)
                    x11.XDestroyImage(image)
                    colour = (pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255)
                    if not seen or seen[-1] != colour:
                        seen.append(colour)
                self._stop.wait(0.001)


class FileWatch:
    """Records which files any process opens and reads, from __enter__ to __exit__."""

    def __init__(self, paths):
        self._watched = [Path(path) for path in paths]
        self._opened, self._read = [], []

    def __enter__(self):
        self._paths = {}
        self._file = _libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        for path in self._watched:
            number = _libc.inotify_add_watch(self._file, os.fsencode(path), IN_OPEN | IN_ACCESS)
            if number < 0:
                raise OSError(ctypes.get_errno(), f"cannot watch {path}")
            self._paths[number] = path
        return self

    def __exit__(self, *_):
        os.close(self._file)

    @property
    def opened(self):
        """The files opened so far, in order."""
        self._take()
        return self._opened

    @property
    def read(self):
        """The files read so far."""
        self._take()
        return self._read

    def _take(self):
        try:
            data = os.read(self._file, 1 << 20)
        except BlockingIOError:
            return
        start = 0
        while start < len(data):
            number, what, _, length = struct.unpack_from("iIII", data, start)
            (self._opened if what & IN_OPEN else self._read).append(self._paths[number])
            start += 16 + length
