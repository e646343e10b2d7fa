"""The properties of an icon's file, by its path and the index.theme of its theme."""

import configparser
from dataclasses import dataclass
from functools import cache
from pathlib import Path

ENDINGS = (".symbolic.png", ".png", ".svg", ".svgz", ".xpm")
IN_GTK = "/org/gtk/libgtk/"  # a path inside GTK's library


@dataclass(frozen=True)
class Directory:
    """One directory of a theme; sizes are in logical pixels."""

    position: int  # in the theme's list
    kind: str
    size: int
    scale: int
    minimum: int
    maximum: int
    threshold: int
    context: str

    @property
    def shape(self):
        return self.kind, self.size, self.scale, self.minimum, self.maximum, self.threshold

    def is_meant_for(self, edge):
        """Whether the directory's icons have this size, in device pixels, according to the icon theme standard."""
        if self.kind == "Scalable":
            return self.minimum * self.scale <= edge <= self.maximum * self.scale
        reach = self.threshold * self.scale if self.kind == "Threshold" else 0
        return abs(edge - self.size * self.scale) <= reach


@dataclass(frozen=True)
class IconFile:
    path: str
    theme: str = ""  # empty: in no theme
    directory: Directory = None
    stem: str = ""
    ending: str = ""

    @property
    def is_drawing(self):
        return self.ending in (".svg", ".svgz")

    @property
    def is_in_gtk(self):
        return self.path.startswith(IN_GTK)

    @property
    def pixels(self):
        """The edge of a picture, in device pixels."""
        return self.directory.size * self.directory.scale

    @property
    def is_applications(self):
        return self.directory is not None and self.directory.context == "Applications"

    @cache
    def shows_the_same_as(self, other):
        if self.is_in_gtk or other.is_in_gtk:
            return False
        return Path(self.path).samefile(other.path) or Path(self.path).read_bytes() == Path(other.path).read_bytes()


@cache
def directories(index):
    """The directories that an index.theme describes, by path."""
    parser = configparser.ConfigParser(interpolation=None, strict=False, delimiters=("=",))
    parser.read(index, encoding="utf-8")
    theme = parser["Icon Theme"]
    listed = theme["Directories"].split(",") + theme.get("ScaledDirectories", "").split(",")
    found = {}
    for path in (path.strip() for path in listed):
        if path and path not in found and path in parser:
            group = parser[path]
            size = group.getint("Size")
            found[path] = Directory(
                position=len(found),
                kind=group.get("Type", "Threshold"),
                size=size,
                scale=group.getint("Scale", 1),
                minimum=group.getint("MinSize", size),
                maximum=group.getint("MaxSize", size),
                threshold=group.getint("Threshold", 2),
                context=group.get("Context", ""),
            )
    return found


@cache
def icon_file(path, icons):
    """The properties of the file `path`, with the themes in the folder `icons`; None for an empty path."""
    if not path:
        return None
    ending = next(ending for ending in ENDINGS if path.endswith(ending))
    stem = path.rpartition("/")[2].removesuffix(ending)
    below = Path(path).relative_to(icons).parts if Path(path).is_relative_to(icons) else ()
    if len(below) < 3:
        return IconFile(path, stem=stem, ending=ending)
    directory = directories(icons / below[0] / "index.theme").get("/".join(below[1:-1]))
    return IconFile(path, below[0], directory, stem, ending)
