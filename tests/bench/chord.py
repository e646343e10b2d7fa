#!/usr/bin/env python3
"""Measures the time from the press of Control-Alt-Space until the hidden launcher is on the screen.

Under Xvfb and openbox at 1920 x 1080, with 200 applications, as another program sees it: the keys are pressed with
XTEST, then one pixel of the screen is read again and again until it differs. Run it on a quiet machine:

    tests/bench/chord.py [program] [presses] [seconds for which it is hidden before each]

After some seconds the hidden launcher gives memory back.
"""

import ctypes
import statistics
import subprocess
import sys
import time
from pathlib import Path

from start import ROOT, install

from harness.waiting import until  # noqa: E402
from harness.x11 import X11Session  # noqa: E402

WINDOW_CLASS = "org.amberquill.Amberquill"
CONTROL, ALT, SPACE = 37, 64, 65  # codes of keys
ALL_PLANES = 0xFFFFFFFF
Z_PIXMAP = 2


class Screen:
    """A client that reads the screen and presses keys."""

    def __init__(self, display):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._test = ctypes.CDLL("libXtst.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self._x11.XGetImage.restype = ctypes.c_void_p
        self._x11.XGetPixel.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(display.encode()))
        self._root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._display))

    def pixel(self, x, y):
        planes = ctypes.c_ulong(ALL_PLANES)
        image = self._x11.XGetImage(self._display, self._root, x, y, 1, 1, planes, Z_PIXMAP)
        value = self._x11.XGetPixel(ctypes.c_void_p(image), 0, 0)
        self._x11.XDestroyImage(ctypes.c_void_p(image))
        return value

    def key(self, code, down):
        self._test.XTestFakeKeyEvent(self._display, code, down, ctypes.c_ulong(0))
        self._x11.XFlush(self._display)

    def press_chord(self):
        """Returns the time of the last key's press."""
        self.key(CONTROL, True)
        self.key(ALT, True)
        pressed = time.monotonic()
        self.key(SPACE, True)
        return pressed

    def let_go(self):
        for code in (SPACE, ALT, CONTROL):
            self.key(code, False)


def milliseconds_to_first_change(screen, x, y):
    before = screen.pixel(x, y)
    pressed = screen.press_chord()
    while screen.pixel(x, y) == before:
        if time.monotonic() - pressed > 5:
            raise SystemExit("the launcher did not come")
    changed = time.monotonic()
    screen.let_go()
    return (changed - pressed) * 1000


def measure(program, presses, hidden):
    with X11Session(1920, 1080) as session:
        install(Path(session.environment["XDG_DATA_HOME"]), 200)
        screen = Screen(session.display)

        def is_up():
            return bool(session.windows_of_class(WINDOW_CLASS))

        launcher = session.start(program)
        until(is_up, "the launcher")
        time.sleep(3)  # until it has settled
        taken = []
        for _ in range(presses):
            screen.press_chord()
            screen.let_go()
            until(lambda: not is_up(), "the launcher's end")
            time.sleep(hidden)
            taken.append(milliseconds_to_first_change(screen, 5, 5))
            window = session.window_of_class(WINDOW_CLASS)
            until(lambda wanted=window: session.focused_window() == wanted, "the focus")
            time.sleep(0.5)
        if launcher.terminate() != 0:
            raise SystemExit("the program did not end well")
    return taken


def by_the_bus(program, presses, hidden):
    """Measures the command that desktops can bind to a key, until it has ended."""
    command = ["gdbus", "call", "--session", "--dest", WINDOW_CLASS, "--object-path", "/org/amberquill/Amberquill"]
    command += ["--method", "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}"]
    with X11Session(1920, 1080) as session:
        install(Path(session.environment["XDG_DATA_HOME"]), 200)
        screen = Screen(session.display)
        session.start(program)
        until(lambda: session.windows_of_class(WINDOW_CLASS), "the launcher")
        time.sleep(3)
        taken = []
        for _ in range(presses):
            session.run(*command)
            until(lambda: not session.windows_of_class(WINDOW_CLASS), "the launcher's end")
            time.sleep(hidden)
            before, called = screen.pixel(5, 5), time.monotonic()
            with subprocess.Popen(command, env=session.environment, stdout=subprocess.DEVNULL) as process:
                while screen.pixel(5, 5) == before:
                    if time.monotonic() - called > 5:
                        raise SystemExit("the launcher did not come")
                taken.append((time.monotonic() - called) * 1000)
                process.wait()
            window = session.window_of_class(WINDOW_CLASS)
            until(lambda wanted=window: session.focused_window() == wanted, "the focus")
            time.sleep(0.5)
    return taken


def report(what, taken):
    ordered = sorted(taken)
    print(
        f"{what}: median {statistics.median(taken):.1f} ms of {len(taken)} "
        f"(best {ordered[0]:.1f}, ninth tenth {ordered[len(ordered) * 9 // 10]:.1f}, worst {ordered[-1]:.1f})"
    )


def main():
    program = Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else str(ROOT / "build" / "release" / "amberquill")
    presses = int(sys.argv[2]) if len(sys.argv) > 2 else 40
    hidden = float(sys.argv[3]) if len(sys.argv) > 3 else 0.5
    report("chord to the first picture", measure(program, presses, hidden))
    report("the bus command to the first picture", by_the_bus(program, presses, hidden))


if __name__ == "__main__":
    main()
