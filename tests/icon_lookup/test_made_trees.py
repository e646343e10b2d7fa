"""Compares the launcher's and GTK's icon files in made trees, for cases that real themes lack: caches, links, folders.

`agree` checks cases with equal answers. Cases with different answers contain both and the reason for ours.
"""

import os
import tempfile
import unittest
from pathlib import Path

from programs import GTK, OURS, answers, make_cache


def index(*directories, inherits=""):
    """An index.theme: directories as ("48/apps", "Size=48\nType=Fixed")."""
    groups = "".join(f"\n[{path}]\n{keys}\n" for path, keys in directories)
    names = ",".join(path for path, _ in directories)
    return f"[Icon Theme]\nName=Test\nInherits={inherits}\nDirectories={names}\n{groups}"


APPS = index(("48/apps", "Size=48\nType=Fixed"), ("96/apps", "Size=96\nType=Fixed"))


class InMadeTrees(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="amberquill-icons-")
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for base in ("user", "system", "pixmaps"):
            (self.root / base).mkdir()
        self.write("system/hicolor/index.theme", index())

    def write(self, path, content=""):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(content)
        return file

    def ask(self, program, name, size, theme):
        bases = [self.root / base for base in ("user", "system", "pixmaps")]
        ((found,),) = answers(program, theme, [str(size)], [name], bases)
        return found.removeprefix(f"{self.root}/")

    def agree(self, expected, name="x", size=48, theme="test"):
        self.differ(expected, expected, name, size, theme)

    def differ(self, ours, gtk, name="x", size=48, theme="test"):
        self.assertEqual(self.ask(OURS, name, size, theme), ours)
        self.assertEqual(self.ask(GTK, name, size, theme), gtk)

    def test_one_theme_in_two_base_folders(self):
        self.write("system/test/index.theme", APPS)
        self.write("system/test/96/apps/x.png")
        self.agree("system/test/96/apps/x.png", size=96)
        self.write("user/test/48/apps/x.png")
        self.agree("user/test/48/apps/x.png")
        self.agree("system/test/96/apps/x.png", size=96)  # the size takes precedence over the base folder
        self.write("user/test/96/apps/x.png")
        self.agree("user/test/96/apps/x.png", size=96)

    def test_themes_that_inherit_each_other_or_a_missing_theme(self):
        self.write("system/test/index.theme", APPS.replace("Inherits=", "Inherits=missing,other"))
        self.write("system/other/index.theme", APPS.replace("Inherits=", "Inherits=test,third"))
        self.write("system/third/index.theme", APPS)
        self.write("system/third/48/apps/x.png")
        self.agree("system/third/48/apps/x.png")
        self.agree("", name="none")
        self.write("system/test/96/apps/x.png")
        self.agree("system/test/96/apps/x.png")  # the theme takes precedence over the size

    def test_directories_that_are_links(self):
        self.write("system/test/index.theme", APPS)
        self.write("elsewhere/apps/x.png")
        (self.root / "system/test/48").symlink_to("../../elsewhere")
        self.agree("system/test/48/apps/x.png")
        make_cache(self.root / "system/test")
        self.agree("system/test/48/apps/x.png")

    def test_a_complete_cache(self):
        self.write("system/test/index.theme", APPS)
        self.write("system/test/48/apps/x.png")
        self.write("system/test/96/apps/x.svg")
        make_cache(self.root / "system/test")
        self.agree("system/test/48/apps/x.png")
        self.agree("system/test/96/apps/x.svg", size=96)
        self.agree("", name="y")

    def test_an_icon_installed_after_the_cache_was_made(self):
        # An installation may leave the cache unchanged. GTK checks only the time of the theme's folder.
        self.write("system/test/index.theme", APPS)
        self.write("system/test/48/apps/x.png")
        make_cache(self.root / "system/test")
        self.write("system/test/48/apps/y.png")
        newer = (self.root / "system/test/icon-theme.cache").stat().st_mtime_ns + 1_000_000_000
        os.utime(self.root / "system/test/48/apps", ns=(newer, newer))
        self.differ("system/test/48/apps/y.png", "", name="y")
        os.utime(self.root / "system/test", ns=(newer, newer))
        self.agree("system/test/48/apps/y.png", name="y")

    def test_an_icon_removed_after_the_cache_was_made(self):
        # The next best file can be shown, the missing one cannot.
        self.write("system/test/index.theme", APPS)
        gone = self.write("system/test/48/apps/x.png")
        self.write("system/test/96/apps/x.png")
        make_cache(self.root / "system/test")
        gone.unlink()
        os.utime(self.root / "system/test/48/apps", ns=(0, 0))  # as if the folder were unchanged
        self.differ("system/test/96/apps/x.png", "system/test/48/apps/x.png")

    def test_dangling_links(self):
        self.write("system/test/index.theme", APPS)
        self.write("system/test/96/apps/x.png")
        (self.root / "system/test/48/apps").mkdir(parents=True)
        (self.root / "system/test/48/apps/x.png").symlink_to("missing.png")
        self.differ("system/test/96/apps/x.png", "system/test/48/apps/x.png")

    def test_unthemed_icons(self):
        self.write("pixmaps/x.xpm")
        self.agree("pixmaps/x.xpm")
        self.write("pixmaps/x.svg")
        self.agree("pixmaps/x.svg")
        # The picture's size is unknown. Most such pictures have 32 or 48 pixels, too few for a launcher's icons.
        self.write("pixmaps/x.png")
        self.differ("pixmaps/x.svg", "pixmaps/x.png")

    def test_an_unthemed_icon_of_the_user(self):
        self.write("pixmaps/x.png")
        self.write("user/x.png")
        self.agree("user/x.png")

    def test_a_programs_own_icon_precedes_adwaitas(self):
        # Adwaita was not chosen here. Its icon is only the last fallback.
        self.write("system/Adwaita/index.theme", APPS)
        self.write("system/Adwaita/48/apps/x.png")
        self.agree("system/Adwaita/48/apps/x.png")
        self.write("system/hicolor/index.theme", APPS)
        self.write("system/hicolor/48/apps/x.png")
        self.differ("system/hicolor/48/apps/x.png", "system/Adwaita/48/apps/x.png")

    def test_an_index_that_only_one_of_two_base_folders_has(self):
        self.write("user/test/48/apps/x.png")
        self.write("system/test/index.theme", APPS)
        self.agree("user/test/48/apps/x.png")

    def test_two_indexes_that_differ(self):
        # An update changed the theme while the user has a folder of an older version. Each index describes its own folder.
        self.write("user/test/index.theme", index(("48/apps", "Size=48\nType=Fixed")))
        self.write("system/test/index.theme", index(("96/apps", "Size=96\nType=Fixed")))
        self.write("system/test/96/apps/x.png")
        self.differ("system/test/96/apps/x.png", "")

    def test_a_directory_that_hicolors_index_lacks(self):
        self.write("system/hicolor/index.theme", APPS)
        self.write("system/hicolor/310x310/apps/x.png")
        self.differ("system/hicolor/310x310/apps/x.png", "")

    def test_a_name_whose_first_part_names_an_icon(self):
        # Another program's icon would mislead.
        self.write("system/test/index.theme", APPS)
        self.write("system/test/48/apps/x.png")
        self.agree("", name="x-settings")

    def test_a_name_with_dots_or_of_other_letters(self):
        self.write("system/test/index.theme", APPS)
        self.write("system/test/48/apps/org.example.X.png")
        self.write("system/test/48/apps/Brücke.png")
        self.agree("system/test/48/apps/org.example.X.png", name="org.example.X")
        self.agree("", name="org.example")
        self.agree("system/test/48/apps/Brücke.png", name="Brücke")

    def test_the_bounds_of_sizes(self):
        self.write(
            "system/test/index.theme",
            index(
                ("fixed", "Size=32\nType=Fixed"),
                ("threshold", "Size=48\nType=Threshold\nThreshold=4"),
                ("scalable", "Size=96\nMinSize=64\nMaxSize=128\nType=Scalable"),
            ),
        )
        for directory in ("fixed", "threshold", "scalable"):
            self.write(f"system/test/{directory}/x.svg")
        for size, directory in ((32, "fixed"), (44, "threshold"), (64, "scalable"), (200, "scalable")):
            with self.subTest(size=size):
                self.agree(f"system/test/{directory}/x.svg", size=size)


if __name__ == "__main__":
    unittest.main()
