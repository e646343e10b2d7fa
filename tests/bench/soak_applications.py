"""The applications of a soak: desktop entries that do nothing when they are started, each with an icon of its own."""

import struct
import zlib

EDGE = 256  # of a PNG, in pixels
THEME = """[Icon Theme]
Name=Hicolor
Comment=The fallback of all themes
Directories=scalable/apps

[scalable/apps]
Size=128
MinSize=8
MaxSize=512
Type=Scalable
"""
WORDS = ("Amber", "Basalt", "Cedar", "Delta", "Ember", "Fjord", "Garnet", "Harbour", "Indigo", "Jasper", "Kelp", "Linen")


def png(number):
    """A picture of two colours, with another border between them in each row."""

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    first = bytes((number * 53 % 256, number * 97 % 256, number * 31 % 256, 255))
    second = bytes((255 - first[0], 255 - first[1], 255 - first[2], 160))
    rows = b"".join(b"\0" + first * left + second * (EDGE - left) for left in ((y + number) % EDGE for y in range(EDGE)))
    header = struct.pack(">IIBBBBB", EDGE, EDGE, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b"")


def svg(number):
    left, right, turn = number * 7919 % 0xFFFFFF, number * 4099 % 0xFFFFFF, number % 90
    return (
        '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 128 128"><defs><linearGradient id="g">'
        f'<stop offset="0" stop-color="#{left:06x}"/><stop offset="1" stop-color="#{right:06x}"/>'
        '</linearGradient></defs><rect x="8" y="8" width="112" height="112" rx="24" fill="url(#g)"/>'
        f'<g transform="rotate({turn} 64 64)"><path d="M32 40h64v16H32zM40 64h48v{number % 32 + 4}H40z" fill="#fff"/></g>'
        f'<text x="64" y="118" font-size="20" text-anchor="middle">{number}</text></svg>'
    )


class SoakApplications:
    """Entries in a session's data folder. Half of the icons are PNGs by path, the others SVGs of the icon theme."""

    def __init__(self, session):
        self._entries = session.data / "applications"
        self._pictures = session.home / "pictures"
        self._theme = session.data / "icons" / "hicolor"
        for folder in (self._entries, self._pictures, self._theme / "scalable" / "apps"):
            folder.mkdir(parents=True)
        (self._theme / "index.theme").write_text(THEME, encoding="utf-8")
        self._made = 0

    def add(self, count):
        """Adds applications and returns their numbers."""
        numbers = range(self._made, self._made + count)
        self._made += count
        for number in numbers:
            self._icon(number).write_bytes(svg(number).encode() if number % 2 else png(number))
            icon = f"soak-{number}" if number % 2 else self._icon(number)
            text = f"[Desktop Entry]\nType=Application\nName={self.name(number)}\nIcon={icon}\nExec=true\n"
            self.path(number).write_text(text, encoding="utf-8")
        return numbers

    def remove(self, numbers):
        for number in numbers:
            self.path(number).unlink()
            self._icon(number).unlink()

    def path(self, number):
        return self._entries / f"org.example.soak{number}.desktop"

    @staticmethod
    def name(number):
        return f"{WORDS[number % len(WORDS)]} {number}"

    def _icon(self, number):
        if number % 2:
            return self._theme / "scalable" / "apps" / f"soak-{number}.svg"
        return self._pictures / f"{number}.png"
