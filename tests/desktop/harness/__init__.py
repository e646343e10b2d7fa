"""Real desktops for the tests: display servers without a screen, each with its own home, runtime folder and bus.

A test case derives from DesktopTestCase, asks it for a session, starts programs in it and waits for conditions.
When the test ends, all programs that it started are killed, with their own child processes.
"""

from harness.case import DesktopTestCase
from harness.kwin import KWinSession
from harness.picture import Picture
from harness.programs import Program
from harness.session import Session
from harness.waiting import until
from harness.watching import FileWatch, PixelWatch, Watch
from harness.wayland import SwaySession, WestonSession
from harness.weston_window import WestonInAWindowSession
from harness.x11 import Geometry, X11Session
from harness.xorg import XorgSession

__all__ = [
    "DesktopTestCase",
    "FileWatch",
    "Geometry",
    "KWinSession",
    "Picture",
    "PixelWatch",
    "Program",
    "Session",
    "SwaySession",
    "Watch",
    "WestonInAWindowSession",
    "WestonSession",
    "X11Session",
    "XorgSession",
    "until",
]
