"""A picture of a screen, pixel by pixel."""

import subprocess
import zlib
from dataclasses import dataclass
from pathlib import Path
from struct import pack


@dataclass(frozen=True)
class Picture:
    width: int
    height: int
    pixels: bytes  # red, green, blue; row by row

    @staticmethod
    def from_ppm(data):
        """A binary PPM file as ImageMagick writes it: no comments, 8 bits a channel."""
        magic, width, height, depth, pixels = _ppm_fields(data)
        if magic != b"P6" or depth != 255 or len(pixels) != width * height * 3:
            raise ValueError("not a picture")
        return Picture(width, height, pixels)

    @staticmethod
    def from_bgra(width, height, stride, data):
        """Four bytes a pixel, the last of them unused; `stride` bytes a row."""
        if stride < width * 4 or len(data) != stride * height:
            raise ValueError("not a picture")
        if stride > width * 4:
            data = b"".join(data[y * stride : y * stride + width * 4] for y in range(height))
        pixels = bytearray(width * height * 3)
        for channel in range(3):
            pixels[channel::3] = data[2 - channel :: 4]
        return Picture(width, height, bytes(pixels))

    @staticmethod
    def read(path):
        """Any picture file that ImageMagick reads."""
        command = ["convert", str(path), "-depth", "8", "ppm:-"]
        return Picture.from_ppm(subprocess.run(command, check=True, capture_output=True, timeout=30).stdout)

    def at(self, x, y):
        """The colour at a point, as (red, green, blue)."""
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise IndexError(f"({x}, {y}) is outside of {self.width} x {self.height}")
        start = (y * self.width + x) * 3
        return tuple(self.pixels[start : start + 3])

    def colours(self, left=0, top=0, width=None, height=None):
        """How often each colour occurs in an area."""
        right = self.width if width is None else left + width
        bottom = self.height if height is None else top + height
        counts = {}
        for y in range(top, bottom):
            row = self.pixels[(y * self.width + left) * 3 : (y * self.width + right) * 3]
            for x in range(0, len(row), 3):
                colour = (row[x], row[x + 1], row[x + 2])
                counts[colour] = counts.get(colour, 0) + 1
        return counts

    def save(self, path):
        """As PNG, for a person to look at."""
        rows = b"".join(
            b"\0" + self.pixels[y * self.width * 3 : (y + 1) * self.width * 3] for y in range(self.height)
        )
        chunks = [
            (b"IHDR", pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)),
            (b"IDAT", zlib.compress(rows, 6)),
            (b"IEND", b""),
        ]
        png = b"\x89PNG\r\n\x1a\n" + b"".join(
            pack(">I", len(data)) + kind + data + pack(">I", zlib.crc32(kind + data)) for kind, data in chunks
        )
        Path(path).write_bytes(png)


def _ppm_fields(data):
    fields = []
    start = 0
    while len(fields) < 4:
        end = start
        while not data[end : end + 1].isspace():
            end += 1
        fields.append(data[start:end])
        start = end + 1
    return fields[0], int(fields[1]), int(fields[2]), int(fields[3]), data[start:]


def is_near(colour, wanted, tolerance=8):
    """Whether two colours differ by no more than the tolerance in each channel."""
    return all(abs(a - b) <= tolerance for a, b in zip(colour, wanted))
