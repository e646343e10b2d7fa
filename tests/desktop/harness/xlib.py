"""Functions of X11 that no command line program offers."""

import ctypes
from contextlib import contextmanager


@contextmanager
def open_display(display):
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


class _Image(ctypes.Structure):
    """The first members of an XImage."""

    _fields_ = [
        ("width", ctypes.c_int),
        ("height", ctypes.c_int),
        ("xoffset", ctypes.c_int),
        ("format", ctypes.c_int),
        ("data", ctypes.c_void_p),
        ("byte_order", ctypes.c_int),
        ("bitmap_unit", ctypes.c_int),
        ("bitmap_bit_order", ctypes.c_int),
        ("bitmap_pad", ctypes.c_int),
        ("depth", ctypes.c_int),
        ("bytes_per_line", ctypes.c_int),
        ("bits_per_pixel", ctypes.c_int),
    ]


def screen_pixels(display, width, height):
    """The pixels of a screen with 32 bits a pixel: the bytes of a row, and all bytes."""
    z_pixmap, all_planes = 2, ctypes.c_ulong(0xFFFFFFFF)
    with open_display(display) as (x11, connection):
        x11.XDefaultRootWindow.restype = ctypes.c_ulong
        x11.XGetImage.restype = ctypes.POINTER(_Image)
        root = ctypes.c_ulong(x11.XDefaultRootWindow(connection))
        image = x11.XGetImage(connection, root, 0, 0, width, height, all_planes, z_pixmap)
        if not image or image.contents.bits_per_pixel != 32:
            raise OSError("no picture of the screen")
        stride = image.contents.bytes_per_line
        pixels = ctypes.string_at(image.contents.data, stride * height)
        x11.XDestroyImage(image)
        return stride, pixels


def compositor_runs(display):
    """Whether a compositor owns the first screen."""
    with open_display(display) as (x11, connection):
        x11.XInternAtom.restype = ctypes.c_ulong
        x11.XGetSelectionOwner.restype = ctypes.c_ulong
        atom = x11.XInternAtom(connection, b"_NET_WM_CM_S0", False)
        return x11.XGetSelectionOwner(connection, ctypes.c_ulong(atom)) != 0


class _Event(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("padding", ctypes.c_long * 24)]


class BellListener:
    """Counts the rings of an X server's bell."""

    BELL = 8  # XkbBellNotify
    CORE_KEYBOARD = 0x0100  # XkbUseCoreKbd

    def __init__(self, display):
        self._opened = open_display(display)
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
        """The number of rings since the last call."""
        count = 0
        while self._x11.XPending(self._connection):
            event = _Event()
            self._x11.XNextEvent(self._connection, ctypes.byref(event))
            count += event.type == self._event
        return count


class _ClientMessage(ctypes.Structure):
    """The first members of a client message event, and its data."""

    _fields_ = [
        ("type", ctypes.c_int),
        ("serial", ctypes.c_ulong),
        ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong),
        ("message", ctypes.c_ulong),
        ("format", ctypes.c_int),
        ("padding", ctypes.c_int),
        ("data", ctypes.c_char * 20),
    ]


class _Client:
    """A connection to an X server with the few requests that the tests need."""

    KEY_PRESS, CLIENT_MESSAGE = 2, 33

    def __init__(self, display):
        self._opened = open_display(display)
        self._x11, self._connection = self._opened.__enter__()
        self._x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x11.XInternAtom.restype = ctypes.c_ulong
        self._root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._connection))

    def close(self):
        self._opened.__exit__(None, None, None)

    def _atom(self, name):
        return self._x11.XInternAtom(self._connection, name.encode(), False)

    def _events(self):
        """The events since the last call."""
        self._x11.XSync(self._connection, False)
        while self._x11.XPending(self._connection):
            event = _Event()
            self._x11.XNextEvent(self._connection, ctypes.byref(event))
            yield event

    def _messages(self):
        """The client messages since the last call."""
        for event in self._events():
            if event.type == self.CLIENT_MESSAGE:
                yield ctypes.cast(ctypes.byref(event), ctypes.POINTER(_ClientMessage)).contents


class KeyTaker(_Client):
    """Another program that grabs keys, whatever window has the focus."""

    SHIFT, LOCK, CONTROL, ALT = 1, 2, 4, 8
    ANY_MODIFIER = 1 << 15
    _ERROR_HANDLER = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)

    def take(self, code, modifiers):
        """Grabs a key, by its code. False: another client has it."""
        errors = []
        handler = self._ERROR_HANDLER(lambda *_: errors.append(True) or 0)
        self._x11.XSetErrorHandler.restype = ctypes.c_void_p
        before = self._x11.XSetErrorHandler(handler)
        self._x11.XGrabKey(self._connection, code, ctypes.c_uint(modifiers), self._root, True, 1, 1)
        self._x11.XSync(self._connection, False)
        self._x11.XSetErrorHandler(ctypes.c_void_p(before))
        return not errors

    def give_back(self, code, modifiers):
        self._x11.XUngrabKey(self._connection, code, ctypes.c_uint(modifiers), self._root)
        self._x11.XSync(self._connection, False)

    def is_taken(self, code, modifiers):
        """Whether another client has the key."""
        got = self.take(code, modifiers)
        if got:
            self.give_back(code, modifiers)
        return not got

    def presses(self):
        """The number of presses since the last call."""
        return sum(event.type == self.KEY_PRESS for event in self._events())


class StubbornWindowManager(_Client):
    """Announces itself and ignores all requests for the focus."""

    TYPE_ATOM, TYPE_WINDOW = 4, 33
    STRUCTURE_NOTIFY = 1 << 17

    def __init__(self, display):
        super().__init__(display)
        x11 = self._x11
        x11.XCreateSimpleWindow.restype = ctypes.c_ulong
        check = ctypes.c_ulong(x11.XCreateSimpleWindow(self._connection, self._root, -9, -9, 1, 1, 0, 0, 0))
        self._activation = self._atom("_NET_ACTIVE_WINDOW")
        self._set(self._root, "_NET_SUPPORTED", self.TYPE_ATOM, self._activation)
        for window in (check, self._root):
            self._set(window, "_NET_SUPPORTING_WM_CHECK", self.TYPE_WINDOW, check.value)
        x11.XSelectInput(self._connection, self._root, ctypes.c_long(self.STRUCTURE_NOTIFY))
        x11.XSync(self._connection, False)

    def _set(self, window, name, kind, value):
        atom, kind, value = (ctypes.c_ulong(each) for each in (self._atom(name), kind, value))
        self._x11.XChangeProperty(self._connection, window, atom, kind, 32, 0, ctypes.byref(value), 1)

    def was_asked_for_the_focus(self, window):
        """Whether the window requested the focus since the last call."""
        asked = False
        for message in self._messages():
            asked |= message.message == self._activation and message.window == window
        return asked


class Pager(_Client):
    """Asks the window manager to close windows, like task bars and window overviews."""

    SUBSTRUCTURE = 1 << 19 | 1 << 20

    def close_window(self, window):
        event = _Event()
        message = ctypes.cast(ctypes.byref(event), ctypes.POINTER(_ClientMessage)).contents
        message.type, message.format, message.window = self.CLIENT_MESSAGE, 32, window
        message.message = self._atom("_NET_CLOSE_WINDOW")
        self._x11.XSendEvent(
            self._connection, self._root, False, ctypes.c_long(self.SUBSTRUCTURE), ctypes.byref(event)
        )
        self._x11.XSync(self._connection, False)


class StartupListener(_Client):
    """Receives the broadcast messages about starting programs."""

    PROPERTY_CHANGE = 1 << 22

    def __init__(self, display):
        super().__init__(display)
        self._parts = {self._atom("_NET_STARTUP_INFO_BEGIN"), self._atom("_NET_STARTUP_INFO")}
        self._heard = ""
        self._x11.XSelectInput(self._connection, self._root, ctypes.c_long(self.PROPERTY_CHANGE))
        self._x11.XSync(self._connection, False)

    def heard(self):
        """All messages so far, joined from their parts of 20 characters."""
        for message in self._messages():
            if message.message in self._parts:
                self._heard += message.data.decode()
        return self._heard


class BlurringCompositor(_Client):
    """Claims to be a compositor that blurs behind windows on request, and does nothing."""

    def __init__(self, display):
        super().__init__(display)
        x11 = self._x11
        x11.XCreateSimpleWindow.restype = ctypes.c_ulong
        window = ctypes.c_ulong(x11.XCreateSimpleWindow(self._connection, self._root, -9, -9, 1, 1, 0, 0, 0))
        selection, self._property, kind, value = (
            ctypes.c_ulong(each)
            for each in (self._atom("_NET_WM_CM_S0"), self._atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), 6, 0)
        )
        x11.XSetSelectionOwner(self._connection, selection, window, ctypes.c_ulong(0))
        x11.XChangeProperty(self._connection, self._root, self._property, kind, 32, 0, ctypes.byref(value), 1)
        x11.XSync(self._connection, False)

    def stop_blurring(self):
        self._x11.XDeleteProperty(self._connection, self._root, self._property)
        self._x11.XSync(self._connection, False)

    def die(self):
        """Ends without removing the property."""
        super().close()

    def close(self):
        self.stop_blurring()
        super().close()
