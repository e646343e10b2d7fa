"""The few things of X11 that no command line program tells."""

import ctypes
from contextlib import contextmanager


@contextmanager
def _open(display):
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    connection = x11.XOpenDisplay(display.encode())
    if not connection:
        raise OSError(f"no X server at {display}")
    connection = ctypes.c_void_p(connection)
    try:
        yield x11, connection
    finally:
        x11.XCloseDisplay(connection)


def compositor_runs(display):
    """Whether a compositor owns the first screen."""
    with _open(display) as (x11, connection):
        x11.XInternAtom.restype = ctypes.c_ulong
        x11.XGetSelectionOwner.restype = ctypes.c_ulong
        atom = x11.XInternAtom(connection, b"_NET_WM_CM_S0", False)
        return x11.XGetSelectionOwner(connection, ctypes.c_ulong(atom)) != 0


class _Event(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("padding", ctypes.c_long * 24)]


class BellListener:
    """Hears the bell of an X server, which is otherwise silent."""

    BELL = 8  # XkbBellNotify
    CORE_KEYBOARD = 0x0100  # XkbUseCoreKbd

    def __init__(self, display):
        self._opened = _open(display)
        self._x11, self._connection = self._opened.__enter__()
        x11, connection = self._x11, self._connection
        event = ctypes.c_int()
        unused = [ctypes.c_int() for _ in range(2)]
        major, minor = ctypes.c_int(1), ctypes.c_int(0)
        x11.XkbQueryExtension(
            connection,
            ctypes.byref(unused[0]),
            ctypes.byref(event),
            ctypes.byref(unused[1]),
            ctypes.byref(major),
            ctypes.byref(minor),
        )
        self._event = event.value
        mask = ctypes.c_ulong(1 << self.BELL)
        x11.XkbSelectEvents(connection, ctypes.c_uint(self.CORE_KEYBOARD), mask, mask)
        x11.XSync(connection, False)

    def close(self):
        self._opened.__exit__(None, None, None)

    def heard(self):
        """How often it rang since the last question."""
        count = 0
        while self._x11.XPending(self._connection):
            event = _Event()
            self._x11.XNextEvent(self._connection, ctypes.byref(event))
            count += event.type == self._event
        return count
