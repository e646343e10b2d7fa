"""X11 sessions on Xvfb, with or without a window manager and a compositor."""

import os
import re
from dataclasses import dataclass

from harness.picture import Picture
from harness.session import Session
from harness.waiting import PATIENCE, until
from harness.xlib import compositor_runs, screen_pixels


@dataclass(frozen=True)
class Geometry:
    """A rectangle in device pixels."""

    x: int
    y: int
    width: int
    height: int


class X11Session(Session):
    def __init__(self, width=1280, height=720, window_manager="openbox", compositor=None, environment=None):
        super().__init__(environment)
        self.width = width
        self.height = height
        self._window_manager = window_manager
        self._compositor = compositor

    def begin(self):
        self._start_server()
        self.run("xsetroot", "-solid", "#804020")
        # Without auto-repeat: on a busy machine a key is released late.
        self.run("xset", "r", "off")
        if self._window_manager:
            self.window_manager = self.start_window_manager()
        if self._compositor:
            self.start(self._compositor, "--backend", "xrender", "--config", "/dev/null")
            until(lambda: compositor_runs(self.display), f"the compositor {self._compositor}")

    def _start_server(self):
        reading, writing = os.pipe()
        with os.fdopen(reading) as answers:
            self.start(
                "Xvfb",
                *("-displayfd", writing),
                *("-screen", 0, f"{self.width}x{self.height}x24"),
                *("-nolisten", "tcp"),
                "-noreset",
                pass_fds=(writing,),
            )
            os.close(writing)
            number = answers.readline().strip()
        if not number:
            raise AssertionError("Xvfb did not start:\n" + self.report())
        self.display = f":{number}"
        self.environment["DISPLAY"] = self.display

    def start_window_manager(self):
        # Its themes are in the system's data folder, which other programs of the session do not use.
        manager = self.start(self._window_manager or "openbox", environment={"XDG_DATA_DIRS": "/usr/share"})
        until(self.has_window_manager, "the window manager")
        # It announces itself before it listens; requests in between are lost.
        for desktop in (1, 0):
            until(lambda: self._switched_to(desktop), "the window manager's answer")
        return manager

    def _switched_to(self, desktop):
        self.run("xdotool", "set_desktop", desktop)
        return self.property("root", "_NET_CURRENT_DESKTOP") == str(desktop)

    def has_window_manager(self):
        return self.property("root", "_NET_SUPPORTING_WM_CHECK") is not None

    def split_into_monitors(self):
        """Two monitors side by side, each half the screen, named left and right."""
        half = self.width // 2
        self.run("xrandr", "--setmonitor", "left", f"{half}/250x{self.height}/280+0+0", "screen")
        self.run("xrandr", "--setmonitor", "right", f"{half}/250x{self.height}/280+{half}+0", "none")
        return Geometry(0, 0, half, self.height), Geometry(half, 0, half, self.height)

    # Input.

    def move_pointer(self, x, y):
        # Without "--sync", which waits long if the pointer is already there. The server moves the pointer before it
        # handles later requests anyway.
        self.run("xdotool", "mousemove", x, y)

    def click(self, x, y, button=1):
        self.move_pointer(x, y)
        self.run("xdotool", "click", button)

    def take(self, x, y):
        """Presses the button there and moves a little, to begin a drag."""
        self.move_pointer(x, y)
        self.run("xdotool", "mousedown", 1)
        self.move_pointer(x + 8, y + 3)

    def drop(self):
        self.run("xdotool", "mouseup", 1)

    def wheel(self, notches, horizontal=False):
        """Turns the wheel under the pointer: down or right for positive numbers."""
        forward, back = (7, 6) if horizontal else (5, 4)
        button = forward if notches > 0 else back
        self.run("xdotool", "click", "--repeat", abs(notches), "--delay", 20, button)

    def press(self, *keys):
        """Presses key combinations by name, for example "ctrl+f" or "Escape"."""
        self.run("xdotool", "key", *keys)

    def type(self, text):
        self.run("xdotool", "type", "--delay", 5, text)

    # State of the screen.

    def screenshot(self):
        return Picture.from_bgra(self.width, self.height, *screen_pixels(self.display, self.width, self.height))

    def windows(self, *wanted):
        """Ids of the windows on the screen that xdotool finds by these arguments."""

        def found():
            result = self.result_of("xdotool", "search", "--onlyvisible", *wanted)
            # xdotool crashes if a window disappears during its search. Then nothing was found.
            return None if b"X Error" in result.stderr else (result.stdout.split(),)

        (ids,) = until(found, "a search in peace")
        return [int(each) for each in ids]

    def windows_of_class(self, name):
        """Ids of the top-level windows that are on screen and whose class is the name."""
        return self.windows("--class", f"^{re.escape(name)}$")

    def window_of_class(self, name, patience=PATIENCE):
        """Waits for the one window of that class."""
        windows = until(lambda: self.windows_of_class(name), f"a window of class {name}", patience)
        if len(windows) != 1:
            raise AssertionError(f"{len(windows)} windows of class {name}")
        return windows[0]

    def geometry(self, window):
        """A window's place on the screen; None while it does not exist."""
        answer = self.run("xwininfo", "-id", window, check=False)
        if "Map State: IsViewable" not in answer:
            return None

        def number(label):
            return int(re.search(rf"{label}:\s+(-?\d+)", answer).group(1))

        return Geometry(
            number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"), number("Height")
        )

    def property(self, window, name):
        """A property's value as xprop prints it, or None. The window may be "root"."""
        where = ["-root"] if window == "root" else ["-id", window]
        answer = self.run("xprop", *where, name, check=False)
        match = re.match(rf"{name}\(\w+\)(?: =|: window id #) ?(.*)", answer, re.DOTALL)
        return match.group(1).strip() if match else None

    def atoms(self, window, name):
        """The names in a property that is a list of atoms."""
        value = self.property(window, name)
        return set(value.split(", ")) if value else set()

    def focused_window(self):
        """The id of the window with the input focus; 0 for none, 1 for the window under the pointer."""
        return int(self.run("xdotool", "getwindowfocus", "-f"))

    def current_desktop(self):
        return int(self.property("root", "_NET_CURRENT_DESKTOP"))
