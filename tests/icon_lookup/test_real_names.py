"""Compares the launcher's choice of icon files with GTK's, in four themes."""

import os
import tempfile
import unittest
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from files import ENDINGS, icon_file
from kinds import KINDS, Question
from programs import GTK, OURS, answers, make_cache

HERE = Path(__file__).resolve().parent
SYSTEM = Path("/usr/share/icons")
THEMES = ("hicolor", "Adwaita", "breeze", "Papirus")
# Sizes of themes, of the launcher's pages and folders, and of a screen with scale 2.
SIZES = ("16", "22", "24", "26", "32", "44", "48", "50", "64", "96", "107", "120", "128", "256", "512")
FINE_SIZES = ("24@2", "48@2", "64@2", "128@2")


def lines(name):
    """`names.txt`: the icons that the entries of some 170 Debian packages name. `files.txt`: those they install."""
    return (HERE / "data" / name).read_text().splitlines()


def stem(file):
    return file.removesuffix(next(ending for ending in ENDINGS if file.endswith(ending)))


def own_names(theme, number):
    """A number of a theme's names, evenly spread: half from applications' icons, half from all."""
    chosen = set()
    for part in ("apps", ""):
        names = set()
        for folder, _, files in os.walk(SYSTEM / theme):
            if part in Path(folder).parts or not part:
                names.update(stem(file) for file in files if file.endswith(ENDINGS))
        names = sorted(names)
        chosen.update(names[:: max(1, len(names) * 2 // number)])
    return chosen


class OnRealNames(unittest.TestCase):
    """Hicolor and pixmaps hold placeholders of the files that programs install. The other themes are the system's."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="amberquill-icons-")
        cls.addClassCleanup(folder.cleanup)
        cls.base = Path(folder.name)
        cls.icons = cls.base / "icons"
        for path in lines("files.txt"):
            file = cls.base / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(path)  # different in each file
        (cls.icons / "hicolor/index.theme").symlink_to(SYSTEM / "hicolor/index.theme")
        make_cache(cls.icons / "hicolor")
        for theme in ("Adwaita", "breeze", "Papirus"):
            assert (SYSTEM / theme).is_dir(), theme
            (cls.icons / theme).symlink_to(SYSTEM / theme)
        named = lines("names.txt")
        names = {*named, *(Path(path).name.rpartition(".")[0] for path in lines("files.txt"))}
        # GTK finds an icon by the first part of such a name only with a flag.
        names |= {name + "-settings" for name in named[::5]}
        for theme in ("Adwaita", "breeze", "Papirus"):
            names |= own_names(theme, 300)
        cls.names = sorted(names)
        with ThreadPoolExecutor(2) as pool:
            questions = [
                (program, theme, SIZES + FINE_SIZES, cls.names, [cls.icons, cls.base / "pixmaps"])
                for theme in THEMES
                for program in (OURS, GTK)
            ]
            found = list(pool.map(answers, *zip(*questions)))
        cls.ours = dict(zip(THEMES, found[0::2]))
        cls.gtk = dict(zip(THEMES, found[1::2]))

    def asked(self):
        for theme in THEMES:
            for name, ours, gtk in zip(self.names, self.ours[theme], self.gtk[theme]):
                for size, our_path, gtk_path in zip(SIZES + FINE_SIZES, ours, gtk):
                    logical, _, scale = size.partition("@")
                    yield theme, Question(name, int(logical), int(scale or 1)), our_path, gtk_path

    def test_each_theme_is_asked_for_many_icons_that_exist(self):
        for theme in THEMES:
            for found in (self.ours, self.gtk):
                self.assertGreaterEqual(sum(any(files) for files in found[theme]), 300, theme)

    def test_all_differences_are_listed_ones(self):
        counts = Counter()
        unknown = []
        asked = 0
        for theme, question, our_path, gtk_path in self.asked():
            asked += 1
            if our_path == gtk_path:
                continue
            ours, gtk = icon_file(our_path, self.icons), icon_file(gtk_path, self.icons)
            if ours is not None and gtk is not None and ours.shows_the_same_as(gtk):
                continue
            kind = next((kind for kind in KINDS if kind.holds(question, ours, gtk)), None)
            if kind is None:
                unknown.append(f"{theme} {question}: ours {our_path or 'none'}, GTK's {gtk_path or 'none'}")
            else:
                counts[kind.title] += 1
        print(f"{len(self.names)} names, {asked} questions, {counts.total() + len(unknown)} differences")
        for title, count in counts.most_common():
            print(f"{count:6} {title}")
        self.assertEqual(unknown[:20], [], f"{len(unknown)} differences of no listed kind")
        self.assertEqual([kind.title for kind in KINDS if counts[kind.title] == 0], [], "listed, but there are none")


if __name__ == "__main__":
    unittest.main()
