#!/usr/bin/env python3
"""Shows the program on an X server without a screen, with the user's own applications and settings:

    scripts/show-without-display.py PROGRAM PICTURE [ARGUMENTS...]

Waits until the launcher is up and at rest, writes a picture of the screen, ends the program and prints the picture's
path.
"""

import os
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desktop"))

from harness import X11Session, until  # noqa: E402

WINDOW_CLASS = "org.amberquill.Amberquill"
SIZE = (1920, 1080)
# Longer than a motion pauses on a busy machine, and than openbox shows its pop-up with the desktop's name.
STILL = 1.0  # seconds


def own_environment():
    """The variables with the places of the user's files, as they are outside of the session."""
    home = os.environ.get("HOME", "/")
    defaults = {
        "HOME": home,
        "LANG": "C.UTF-8",
        "XDG_DATA_HOME": f"{home}/.local/share",
        "XDG_CONFIG_HOME": f"{home}/.config",
        "XDG_CACHE_HOME": f"{home}/.cache",
        "XDG_STATE_HOME": f"{home}/.local/state",
        "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
    }
    environment = {name: os.environ.get(name) or value for name, value in defaults.items()}
    passed_on = ("LANGUAGE", "LC_ALL", "LC_MESSAGES", "XDG_CURRENT_DESKTOP")
    environment.update({name: os.environ[name] for name in passed_on if name in os.environ})
    return environment


class Stillness:
    """Waits until nothing moves on the screen."""

    def __init__(self, session):
        self._session = session
        self._pixels = None
        self._since = None

    def picture(self):
        """The picture of the screen once it has stayed the same for a while; None before."""
        picture = self._session.screenshot()
        # The caret blinks in the search field, at the top.
        pixels = picture.pixels[len(picture.pixels) // 12 :]
        now = time.monotonic()
        if pixels != self._pixels:
            self._pixels, self._since = pixels, now
        return picture if now - self._since >= STILL else None


def covers(picture, empty):
    """Whether the launcher is in the picture: it changes each corner of the empty screen."""
    corners = ((x, y) for x in (0, empty.width - 1) for y in (0, empty.height - 1))
    return all(picture.at(*corner) != empty.at(*corner) for corner in corners)


def main():
    program, picture, *arguments = sys.argv[1:]
    with X11Session(*SIZE, environment=own_environment()) as session:
        # Wait for the end of openbox's pop-up: the launcher would show it in its backdrop.
        empty = until(Stillness(session).picture, "the empty desktop")
        launcher = session.start(Path(program).resolve(), *arguments)
        try:
            session.window_of_class(WINDOW_CLASS)
            until(lambda: covers(session.screenshot(), empty), "the painted launcher")
            until(Stillness(session).picture, "its rest").save(picture)
            status = launcher.terminate()
        except AssertionError as error:
            print(f"{error}\n{session.report()}", file=sys.stderr)
            return 1
    print(f"A picture of it: {Path(picture).resolve()}")
    return status


if __name__ == "__main__":
    sys.exit(main())
