#!/usr/bin/env python3
"""Shows the program on an X server without a screen, with the user's own applications and settings:

    scripts/show-without-display.py PROGRAM PICTURE [ARGUMENTS...]

Waits until the launcher is up and painted, writes a picture of the screen, asks the program to end and prints where
the picture lies. Nothing is left running.
"""

import os
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "desktop"))

from harness import X11Session, until  # noqa: E402

WINDOW_CLASS = "org.amberquill.Amberquill"
SIZE = (1920, 1080)


def own_environment():
    """The variables that say where the user's files are, as they are outside of the session."""
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


def painted(session, window, empty):
    """The picture of the screen once the window covers it and has come to rest; none before."""
    if session.geometry(window) is None:
        return None
    first = session.screenshot()
    rests = first.pixels == session.screenshot().pixels
    corners = ((0, 0), (first.width - 1, 0), (0, first.height - 1), (first.width - 1, first.height - 1))
    covered = all(first.at(x, y) != empty.at(x, y) for x, y in corners)
    return first if rests and covered else None


def main():
    program, picture, *arguments = sys.argv[1:]
    with X11Session(*SIZE, environment=own_environment()) as session:
        empty = session.screenshot()
        launcher = session.start(Path(program).resolve(), *arguments)
        try:
            window = session.window_of_class(WINDOW_CLASS)
            until(lambda: painted(session, window, empty), "the painted launcher").save(picture)
            status = launcher.terminate()
        except AssertionError as error:
            print(f"{error}\n{session.report()}", file=sys.stderr)
            return 1
    print(f"A picture of it: {Path(picture).resolve()}")
    return status


if __name__ == "__main__":
    sys.exit(main())
