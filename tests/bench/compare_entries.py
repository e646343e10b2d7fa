#!/usr/bin/env python3
"""Compares the launcher's list of this machine's applications with GIO's.

For several languages and desktops: prints each application that only one of the two lists or whose names differ,
except for intended differences, and exits with 1 if there are any. Needs a build with the benchmarks:

    cmake --preset bench && cmake --build --preset bench --target list_entries list_entries_by_gio
    tests/bench/compare_entries.py [folder of the two programs]
"""

import os
import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LANGUAGES = ("", "de_DE", "fr_CA:fr", "ja", "zh_TW", "sr_RS@latin", "pt_BR")
DESKTOPS = ("GNOME", "KDE", "X-Other:XFCE", "")
OWN_ID = "org.amberquill.Amberquill.desktop"


def listed_by(program, fields, environment):
    """A program's list, by id: tuples of the other fields."""
    output = subprocess.run([program], env=environment, check=True, stdout=subprocess.PIPE).stdout
    texts = output.decode(errors="replace").split("\0")[:-1]
    rows = [texts[at : at + fields] for at in range(0, len(texts), fields)]
    return {row[0]: tuple(row[1:]) for row in rows}


def is_listed_on_purpose(path, program):
    """Whether only the launcher lists this application on purpose."""
    # The launcher finds Flatpak's and Snap's exports without the session's variables.
    if "/flatpak/exports/" in path or path.startswith("/var/lib/snapd"):
        return True
    # Only TryExec decides whether an application is installed.
    return bool(program) and shutil.which(program) is None


def differences(ours, gio):
    for name in sorted(ours.keys() | gio.keys()):
        if name not in gio:
            path, _, program = ours[name]
            if not is_listed_on_purpose(path, program):
                yield f"{name}: only we list it: {path}"
        elif name not in ours:
            if name != OWN_ID:
                yield f"{name}: only GIO lists it: {gio[name][0]}"
        elif ours[name][1] != gio[name][1]:
            yield f"{name}: we call it {ours[name][1]!r}, GIO calls it {gio[name][1]!r}: {ours[name][0]}"


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else ROOT / "build" / "bench" / "bench"
    found = 0
    compared = 0
    for language in LANGUAGES:
        for desktops in DESKTOPS:
            environment = {
                name: value for name, value in os.environ.items() if name != "LANG" and not name.startswith("LC_")
            }
            environment |= {"LANGUAGE": language, "XDG_CURRENT_DESKTOP": desktops}
            ours = listed_by(folder / "list_entries", 4, environment)
            gio = listed_by(folder / "list_entries_by_gio", 3, environment)
            compared += len(ours.keys() | gio.keys())
            for difference in differences(ours, gio):
                found += 1
                print(f"LANGUAGE={language} XDG_CURRENT_DESKTOP={desktops} {difference}")
    print(f"{found} differences in {compared} comparisons")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
