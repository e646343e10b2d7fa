#!/usr/bin/env python3
"""Compares SVG icons drawn by the launcher with those drawn by rsvg-convert, pixel by pixel.

    tests/drawings/compare.py [--installed] [--count N] [--edges 48,120] [--build build/release] [--sheet drawings.png]

The icons are those of real applications, from packages that are downloaded and unpacked below ~/.cache, not installed;
with --installed, those of themes on this machine. Prints the icons that differ visibly and how many there are, writes a
sheet (the launcher's, rsvg-convert's, the difference made brighter), and exits with 1 if one differs.

A pixel differs visibly when one of its channels, with colours multiplied by opacity, differs by more than 2 of 255; an
icon does when a single pixel does. Of an icon that is not square, the picture's place in the square is compared too.
"""

import argparse
import math
import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
THRESHOLD = 2  # of 255
BRIGHTER = 16  # factor for the difference on a sheet
SHOWN_EDGE = 120  # on a sheet

# Of Debian 12; each has an SVG icon for applications in the theme that all applications share. Among them are drawings
# with clip paths, masks, filters, gradients, patterns, style sheets, embedded pictures and text.
PACKAGES = """
    ark audacity-data baobab blinken bluefish-data brasero-common cheese-common clementine darktable dconf-editor deja-dup
    devhelp-common digikam-data dino-im-common easytag elisa eog epiphany-browser-data evince featherpad file-roller
    filezilla-common flameshot fontforge-common gajim geany-common geary gedit-common glade gnome-2048 gnome-boxes
    gnome-calculator gnome-calendar gnome-characters gnome-chess gnome-clocks gnome-contacts gnome-disk-utility
    gnome-font-viewer gnome-logs gnome-maps gnome-mines gnome-music gnome-photos gnome-sound-recorder gnome-sudoku
    gnome-system-monitor gnome-text-editor gnome-weather gnucash-common gpick gramps gthumb-data handbrake hexchat-common
    hugin-data hydrogen-data inkscape k3b-data kate5-data kdenlive-data kdevelop-data keepassxc khangman kid3 kig kmplot
    kolourpaint ktouch-data librecad lmms-common lollypop meld minetest-data mousepad mpv mypaint-data nautilus-data
    obs-studio parole peek pidgin-data pitivi qbittorrent qjackctl qtractor quodlibet remmina-common rhythmbox-data
    ristretto seahorse simple-scan simplescreenrecorder soundconverter texstudio totem-common transmission-common
    xfce4-terminal xournalpp
""".split()

RARE = (b"<text", b"<mask", b"<image", b"<pattern", b"clip-path", b"<style", b"<filter")
EACH = 6  # icons of each theme and feature
THEMES = ("Papirus", "breeze")  # in /usr/share/icons; those that draw icons of applications


def is_application_icon(path):
    return path.suffix in (".svg", ".svgz") and not path.stem.endswith("-symbolic") and not path.is_symlink()


def dealt(groups, count):
    """The first of each group, then the second of each, and so on."""
    longest = max(map(len, groups), default=0)
    turns = [group[turn] for turn in range(longest) for group in groups if turn < len(group)]
    return turns[:count]


def spread(items, count):
    """A number of items, evenly spread over the list."""
    return items[:: max(len(items) // count, 1)][:count]


def downloaded_icons(count):
    """Icons of the packages, which are downloaded and unpacked once."""
    cache = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "amberquill-drawings"
    cache.mkdir(parents=True, exist_ok=True)
    missing = [name for name in PACKAGES if not (cache / name).is_dir()]
    if missing:
        with tempfile.TemporaryDirectory(dir=cache) as archives:
            subprocess.run(["apt-get", "download", *missing], cwd=archives, check=True)
            for archive in Path(archives).glob("*.deb"):
                name = archive.name.split("_")[0]
                content = subprocess.run(["dpkg-deb", "--fsys-tarfile", archive], check=True, capture_output=True).stdout
                icons = cache / f"{name}.part"
                icons.mkdir(exist_ok=True)
                tar = ["tar", "--extract", "--directory", icons, "--wildcards", "*/icons/hicolor/scalable/*apps/*.svg*"]
                subprocess.run(tar, input=content, check=True)
                icons.rename(cache / name)
    groups = []
    seen = set()
    for name in PACKAGES:
        files = sorted(filter(is_application_icon, (cache / name).rglob("*.svg*")), key=lambda path: (len(path.name), path))
        new = [path for path in files if path.read_bytes() not in seen]
        seen.update(path.read_bytes() for path in new)
        groups.append(new)
    return dealt(groups, count)


def installed_icons(count):
    """Icons of the themes: some with rare features of SVG, then others from all parts of each theme."""
    groups = []
    for theme in THEMES:
        found = filter(is_application_icon, Path("/usr/share/icons", theme).glob("**/apps/**/*.svg"))
        files = sorted({path.name: path for path in sorted(found)}.values())  # one size of each
        contents = {path: path.read_bytes() for path in files}
        chosen = []
        for word in RARE:
            using = [path for path in files if word in contents[path] and path not in chosen]
            chosen += spread(using, EACH)
        usual = [path for path in files if path not in chosen]
        groups.append(chosen + spread(usual, count))
    return dealt(groups, count)


@dataclass
class Drawing:
    """One icon at one edge, drawn twice."""

    edge: int
    ours: Path
    theirs: Path
    different: int = 0  # pixels that differ visibly
    most: int = 0  # the largest difference of a channel, of 255


@dataclass
class Icon:
    path: Path
    drawings: list

    @property
    def differs(self):
        return any(drawing.different for drawing in self.drawings)


def rsvg_convert(path, *arguments):
    command = ["rsvg-convert", "--keep-aspect-ratio", *map(str, arguments), str(path)]
    return subprocess.run(command, check=True, capture_output=True, timeout=60).stdout


def draw_theirs(icon):
    """Draws the icon exactly centred in a square. rsvg-convert needs the margins for that."""
    for drawing in icon.drawings:
        edge = drawing.edge
        size = ("--width", edge, "--height", edge)
        header = rsvg_convert(icon.path, *size, "--format", "svg")[:500].decode()
        width, height = (float(re.search(rf'<svg[^>]* {name}="([0-9.]+)"', header)[1]) for name in ("width", "height"))
        left, top = ((edge - min(math.ceil(length), edge)) // 2 for length in (width, height))
        place = ("--left", left, "--top", top, "--page-width", edge, "--page-height", edge)
        rsvg_convert(icon.path, *size, *place, "--output", drawing.theirs)


def draw_ours(program, icons, edges, folder):
    paths = "".join(f"{icon.path}\n" for icon in icons)
    subprocess.run([program, folder, *map(str, edges)], input=paths, text=True, check=True, timeout=600)
    for icon in icons:
        for drawing in icon.drawings:
            if not drawing.ours.exists():
                nothing = ["convert", "-size", f"{drawing.edge}x{drawing.edge}", "xc:none", drawing.ours]
                subprocess.run(nothing, check=True)


def pixels(files):
    """The pictures' pixels one after the other: red, green, blue, opacity; not multiplied."""
    return subprocess.run(["convert", *files, "-depth", "8", "rgba:-"], check=True, capture_output=True).stdout


def multiplied(pixel):
    red, green, blue, opacity = pixel
    return (*(round(channel * opacity / 255) for channel in (red, green, blue)), opacity)


def compare(icon):
    ours, theirs = (pixels(files) for files in zip(*((drawing.ours, drawing.theirs) for drawing in icon.drawings)))
    wanted = sum(drawing.edge**2 * 4 for drawing in icon.drawings)
    if not len(ours) == len(theirs) == wanted:
        raise ValueError(f"a picture of {icon.path} is not of the size that was asked for")
    start = 0
    for drawing in icon.drawings:
        end = start + drawing.edge**2 * 4
        if ours[start:end] != theirs[start:end]:
            for at in range(start, end, 4):
                one, other = ours[at : at + 4], theirs[at : at + 4]
                if one != other:
                    by = max(abs(a - b) for a, b in zip(multiplied(one), multiplied(other)))
                    drawing.different += by > THRESHOLD
                    drawing.most = max(drawing.most, by)
        start = end


def write_sheet(icons, folder, path):
    """Writes the icons at the size closest to the shown one: ours, theirs, and the difference made brighter."""

    def draw(numbered):
        number, icon = numbered
        drawing = min(icon.drawings, key=lambda drawing: abs(drawing.edge - SHOWN_EDGE))
        row = folder / f"row-{number:03}.png"
        command = ["convert", "-background", "#d8d8d8"]
        command += ["(", drawing.ours, "-alpha", "remove", ")", "(", drawing.theirs, "-alpha", "remove", ")"]
        command += ["(", "-clone", "0,1", "-compose", "difference", "-composite", "-evaluate", "multiply", str(BRIGHTER), ")"]
        subprocess.run([*command, "+append", row], check=True)
        return ["-label", f"{icon.path.name}\n{drawing.different} pixels differ", row]

    with ThreadPoolExecutor(os.cpu_count()) as pool:
        rows = [argument for row in pool.map(draw, enumerate(icons)) for argument in row]
    subprocess.run(["montage", *rows, "-tile", "5x", "-geometry", "+6+4", "-pointsize", "10", path], check=True)


def compared(paths, edges, build, sheet=None):
    """Draws and compares all icons at all edges."""
    with tempfile.TemporaryDirectory() as folder:
        folder = Path(folder)
        (folder / "theirs").mkdir()
        icons = [
            Icon(path, [Drawing(edge, folder / f"{n}-{edge}.png", folder / "theirs" / f"{n}-{edge}.png") for edge in edges])
            for n, path in enumerate(paths)
        ]
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            ours = pool.submit(draw_ours, Path(build) / "tests" / "draw_icons", icons, edges, folder)
            list(pool.map(draw_theirs, icons))
            ours.result()
            list(pool.map(compare, icons))
        if sheet:
            write_sheet(icons, folder, sheet)
    return icons


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--installed", action="store_true")
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--edges", default="48,96,120,128,256", type=lambda text: [int(edge) for edge in text.split(",")])
    parser.add_argument("--build", default=ROOT / "build" / "release")
    parser.add_argument("--sheet")
    options = parser.parse_args()
    paths = (installed_icons if options.installed else downloaded_icons)(options.count)
    icons = compared(paths, options.edges, options.build, options.sheet)
    for icon in icons:
        for drawing in icon.drawings:
            if drawing.different:
                print(f"{icon.path} at {drawing.edge}: {drawing.different} pixels differ, by {drawing.most} at most")
    different = sum(icon.differs for icon in icons)
    most = max((drawing.most for icon in icons for drawing in icon.drawings), default=0)
    print(
        f"{len(icons)} icons at {', '.join(map(str, options.edges))} pixels: {different} differ visibly "
        f"(a channel by more than {THRESHOLD} of 255; the most is {most})"
    )
    return 1 if different or len(icons) < options.count else 0


if __name__ == "__main__":
    sys.exit(main())
