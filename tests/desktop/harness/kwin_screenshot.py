"""Takes screenshots of KWin, as a program of the session. For each line on its input, the path of a file, it
writes the pixels there (blue, green, red, unused) and prints "picture WIDTH HEIGHT BYTES-OF-A-ROW".
"""

import os
import sys

from gi.repository import Gio, GLib


def take(bus, path):
    reading, writing = os.pipe()
    descriptors = Gio.UnixFDList.new_from_array([writing])
    # The message's first descriptor. The list closes the other end of the pipe.
    arguments = GLib.Variant("(a{sv}h)", ({}, 0))
    told, _ = bus.call_with_unix_fd_list_sync(
        "org.kde.KWin",
        "/org/kde/KWin/ScreenShot2",
        "org.kde.KWin.ScreenShot2",
        "CaptureActiveScreen",
        arguments,
        None,
        Gio.DBusCallFlags.NONE,
        15_000,
        descriptors,
    )
    del descriptors
    size = told.unpack()[0]
    wanted = size["stride"] * size["height"]
    with os.fdopen(reading, "rb") as pipe, open(path, "wb") as file:
        file.write(pipe.read(wanted))
    print("picture", size["width"], size["height"], size["stride"], flush=True)


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    for line in sys.stdin:
        take(bus, line.rstrip("\n"))


if __name__ == "__main__":
    main()
