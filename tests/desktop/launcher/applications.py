"""Applications made for a test: each has an icon of one colour and, when started, appends its name to a file."""

import plistlib
import struct
import zlib
from dataclasses import dataclass
from pathlib import Path

ICON_EDGE = 256
LEVELS = (45, 97, 149, 201, 253)  # of each channel; further apart than rounding errors
STRIDE = 48  # through the colours, so that neighbours differ clearly
THEME = """[Icon Theme]
Name=Hicolor
Comment=The fallback of all themes
Directories=256x256/apps

[256x256/apps]
Size=256
Type=Threshold
"""


def colour_number(index):
    """One of 125 colours, different for each index."""
    number = index * STRIDE % 125
    return LEVELS[number % 5], LEVELS[number // 5 % 5], LEVELS[number // 25]


def png(colour, edge=ICON_EDGE):
    """A square picture of one colour."""
    row = b"\0" + bytes(colour) * edge
    chunks = [
        (b"IHDR", struct.pack(">IIBBBBB", edge, edge, 8, 2, 0, 0, 0)),
        (b"IDAT", zlib.compress(row * edge, 1)),
        (b"IEND", b""),
    ]
    return b"\x89PNG\r\n\x1a\n" + b"".join(
        struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data)) for kind, data in chunks
    )


@dataclass(frozen=True)
class Application:
    name: str
    path: Path
    colour: tuple  # none: its icon cannot be shown


class Applications:
    """The applications of a session, and the file where the started ones append their names."""

    def __init__(self, session):
        self._entries = session.data / "applications"
        self._bundles = session.home / "Applications"
        self._pictures = session.home / "pictures"
        self._themed = session.data / "icons" / "hicolor" / "256x256" / "apps"
        self._services = session.data / "dbus-1" / "services"
        self._record = session.home / "record"
        self._started = session.home / "started"
        for folder in (self._entries, self._bundles, self._pictures, self._themed):
            folder.mkdir(parents=True)
        (self._themed.parents[1] / "index.theme").write_text(THEME, encoding="utf-8")
        self._record.write_text(self._script('"$1"'), encoding="utf-8")
        self._record.chmod(0o755)
        self._made = 0

    @property
    def entries(self):
        return self._entries

    @property
    def bundles(self):
        return self._bundles

    def started(self):
        """The names of the applications that were started, each line as it was written."""
        return self._started.read_text(encoding="utf-8") if self._started.exists() else ""

    def _script(self, name):
        return f"#!/bin/sh\nprintf '%s\\n' {name} >> '{self._started}'\n"

    def _next_colour(self):
        self._made += 1
        return colour_number(self._made - 1)

    def add_entry(self, name, identifier, themed=False):
        """A desktop entry. Its icon is named by its path, or found in the icon theme."""
        colour = self._next_colour()
        if themed:
            icon = identifier
            (self._themed / f"{identifier}.png").write_bytes(png(colour))
        else:
            icon = self._pictures / f"{identifier}.png"
            icon.write_bytes(png(colour))
        application = Application(name, self._entries / f"{identifier}.desktop", colour)
        self.write_entry(application.path, name, icon)
        return application

    def write_entry(self, path, name, icon):
        path.write_text(
            f'[Desktop Entry]\nType=Application\nName={name}\nIcon={icon}\nExec="{self._record}" "{name}"\n',
            encoding="utf-8",
        )

    def add_activatable(self, name, identifier):
        """An entry whose application is started by the bus, which appends "bus" first."""
        application = self.add_entry(name, identifier)
        with application.path.open("a", encoding="utf-8") as entry:
            entry.write("DBusActivatable=true\n")
        service = f"[D-BUS Service]\nName={identifier}\nExec={self._record} bus\n"
        (self._services / f"{identifier}.service").write_text(service, encoding="utf-8")
        return application

    def rename(self, application, name):
        """Gives an entry another name to show; everything else stays."""
        text = application.path.read_text(encoding="utf-8")
        application.path.write_text(
            text.replace(f"\nName={application.name}\n", f"\nName={name}\n"), encoding="utf-8"
        )

    def add_bundle(self, name, identifier):
        colour = self._next_colour()
        path = self._bundles / f"{name}.app"
        contents = path / "Contents"
        (contents / "MacOS").mkdir(parents=True)
        (contents / "Resources").mkdir()
        (contents / "Resources" / "icon.png").write_bytes(png(colour))
        information = {
            "CFBundleIdentifier": identifier,
            "CFBundleExecutable": "program",
            "CFBundleIconFile": "icon.png",
        }
        (contents / "Info.plist").write_bytes(plistlib.dumps(information))
        self._add_program(contents / "MacOS" / "program", name)
        return Application(name, path, colour)

    def add_gnustep_bundle(self, name):
        colour = self._next_colour()
        path = self._bundles / f"{name}.app"
        (path / "Resources").mkdir(parents=True)
        (path / "Resources" / "icon.png").write_bytes(png(colour))
        information = {"NSExecutable": "program", "NSIcon": "icon.png"}
        (path / "Resources" / "Info-gnustep.plist").write_bytes(plistlib.dumps(information))
        self._add_program(path / "program", name)
        return Application(name, path, colour)

    def _add_program(self, path, name):
        path.write_text(self._script(f"'{name}'"), encoding="utf-8")
        path.chmod(0o755)

    def add_many(self):
        """84 entries and three bundles, in the order in which they must be shown: three pages, the last not full.

        This order is neither that of the files' names nor that of the names' code points.
        """
        bundles = {3: self._add_first_bundle, 20: self._add_second_bundle, 34: self.add_gnustep_bundle}
        made = []
        for number in range(1, 88):
            name = f"{'App' if number % 2 else 'app'} {number}"
            if number in bundles:
                made.append(bundles[number](name))
            else:
                made.append(self.add_entry(name, f"org.example.e{100 - number}", themed=number % 2 == 0))
        return made

    def _add_first_bundle(self, name):
        return self.add_bundle(name, "org.example.first")

    def _add_second_bundle(self, name):
        return self.add_bundle(name, "org.example.second")
