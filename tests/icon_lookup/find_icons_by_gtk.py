"""Prints the files that GTK chooses for icons, with the interface of find_icons. Needs no display."""

import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk  # noqa: E402


def main():
    theme = Gtk.IconTheme.new()
    theme.set_search_path(sys.argv[3:])
    theme.set_custom_theme(sys.argv[1])
    sizes = [size.partition("@")[::2] for size in sys.argv[2].split(",")]
    for line in sys.stdin:
        for size, scale in sizes:
            # Drawings count even if this machine's GTK cannot draw them.
            flags = Gtk.IconLookupFlags.FORCE_SVG
            icon = theme.lookup_icon_for_scale(line.rstrip("\n"), int(size), int(scale or 1), flags)
            print(icon.get_filename() if icon else "")


main()
