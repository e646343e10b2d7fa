"""What is seen of single pixels while a screen changes, far more often than pictures could be taken of it."""

import ctypes
import threading

from harness.xlib import open_display

Z_PIXMAP = 2


class PixelWatch:
    """Looks at a few points of an X screen again and again, from the moment it is entered until it is left."""

    def __init__(self, display, points):
        self._display = display
        self._points = points
        self._stop = threading.Event()
        self.seen = [[] for _ in points]  # for each point the colours in their order, without repetitions

    def __enter__(self):
        self._thread = threading.Thread(target=self._watch)
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._stop.set()
        self._thread.join()

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
