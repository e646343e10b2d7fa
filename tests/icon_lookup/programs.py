"""The two programs that choose icon files: ours and GTK's."""

import os
import subprocess
from pathlib import Path

OURS = (Path(os.environ["AMBERQUILL_BUILD"]) / "tests/find_icons",)
# The interpreter that has the introspection packages.
GTK = ("/usr/bin/python3", "-B", Path(__file__).resolve().parent / "find_icons_by_gtk.py")


# Without the user's settings and without a display.
ENVIRONMENT = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")} | {
    "HOME": "/nonexistent",
    "LC_ALL": "C.UTF-8",
}


def answers(program, theme, sizes, names, base_folders):
    """The files at all sizes, for each name."""
    output = subprocess.run(
        [*program, theme, ",".join(sizes), *base_folders],
        input="".join(name + "\n" for name in names),
        stdout=subprocess.PIPE,
        env=ENVIRONMENT,
        text=True,
        encoding="utf-8",
        check=True,
        timeout=120,
    ).stdout.split("\n")[:-1]
    assert len(output) == len(names) * len(sizes), (len(output), len(names), len(sizes))
    return [output[at : at + len(sizes)] for at in range(0, len(output), len(sizes))]


def make_cache(theme):
    """Makes a theme's cache, like the installation of packages."""
    subprocess.run(["gtk-update-icon-cache", "--quiet", "--force", "--ignore-theme-index", theme], check=True)
