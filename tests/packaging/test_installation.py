"""The files of `cmake --install`, checked with the desktop's own tools."""

import configparser
import gzip
import os
import plistlib
import re
import struct
import subprocess
import tempfile
import unittest
from pathlib import Path

BUILD = Path(os.environ.get("AMBERQUILL_BUILD", "build/release")).resolve()
CMAKE = os.environ.get("AMBERQUILL_CMAKE", "cmake")
SOURCE = Path(__file__).resolve().parents[2]
ID = "org.amberquill.Amberquill"
EDGES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
LANGUAGES = ("de", "es", "fr", "it", "ja", "zh")

FILES = {
    "bin/amberquill",
    "libexec/amberquill-icons",
    "share/amberquill/Info.plist",
    f"share/applications/{ID}.desktop",
    f"share/dbus-1/services/{ID}.service",
    "share/doc/amberquill/changelog.gz",
    "share/doc/amberquill/copyright",
    *(f"share/icons/hicolor/{edge}x{edge}/apps/{ID}.png" for edge in EDGES),
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    f"share/kglobalaccel/{ID}.desktop",
    "share/man/man1/amberquill.1.gz",
    f"share/metainfo/{ID}.metainfo.xml",
}


def install(prefix, **environment):
    subprocess.run(
        [CMAKE, "--install", BUILD, "--prefix", prefix],
        check=True,
        capture_output=True,
        env={**os.environ, **environment},
    )


def files_below(folder):
    return {str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_symlink() or not path.is_dir()}


def entry_file(path):
    """The groups of a desktop entry or a service file."""
    parser = configparser.RawConfigParser(delimiters=("=",), comment_prefixes=("#",), strict=True)
    parser.optionxform = str
    parser.read_string(path.read_text(encoding="utf-8"))
    return parser


def output_of(*command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    return result.returncode, result.stdout + result.stderr


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.prefix = cls.folder / "a prefix"
        install(cls.prefix)
        cls.entry_path = cls.prefix / f"share/applications/{ID}.desktop"
        cls.entry = entry_file(cls.entry_path)

    def test_these_files_are_installed_and_no_others(self):
        self.assertEqual(files_below(self.prefix), FILES)

    def test_the_program_is_executable(self):
        self.assertTrue(os.access(self.prefix / "bin/amberquill", os.X_OK))

    def test_the_program_and_its_information_say_this_version(self):
        version = re.search(r"VERSION ([\d.]+)\n", (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
        self.assertEqual(output_of(self.prefix / "bin/amberquill", "--version"), (0, f"Amberquill {version}\n"))
        information = plistlib.loads((self.prefix / "share/amberquill/Info.plist").read_bytes())
        self.assertEqual(information["CFBundleShortVersionString"], version)
        self.assertEqual(information["CFBundleVersion"], version)

    def test_the_entry_is_valid(self):
        self.assertEqual(output_of("desktop-file-validate", self.entry_path), (0, ""))

    def test_the_description_is_valid(self):
        path = self.prefix / f"share/metainfo/{ID}.metainfo.xml"
        status, text = output_of("appstreamcli", "validate", "--no-net", "--no-color", path)
        self.assertEqual(status, 0, text)
        self.assertNotRegex(text, r"(?m)^[EWI]: ")

    def test_the_description_has_this_version(self):
        version = re.search(r"VERSION ([\d.]+)\n", (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
        text = (self.prefix / f"share/metainfo/{ID}.metainfo.xml").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r'<release version="([^"]*)"', text)[0], version)
        changes = gzip.decompress((self.prefix / "share/doc/amberquill/changelog.gz").read_bytes()).decode()
        self.assertTrue(changes.startswith(f"amberquill ({version}) "), changes[:40])
        manual = gzip.decompress((self.prefix / "share/man/man1/amberquill.1.gz").read_bytes()).decode()
        self.assertIn(f'"Amberquill {version}"', manual.splitlines()[0])

    def test_everything_names_the_program_by_its_path(self):
        program = f'"{self.prefix}/bin/amberquill"'
        self.assertEqual(self.entry["Desktop Entry"]["Exec"], program)
        for action in ("toggle", "show", "hide"):
            self.assertEqual(self.entry[f"Desktop Action {action}"]["Exec"], f"{program} --{action}")
        service = entry_file(self.prefix / f"share/dbus-1/services/{ID}.service")
        self.assertEqual(dict(service["D-BUS Service"]), {"Name": ID, "Exec": program})

    def test_a_plain_path_is_not_quoted(self):
        prefix = self.folder / "plain"
        install(prefix)
        self.assertEqual(
            entry_file(prefix / f"share/applications/{ID}.desktop")["Desktop Entry"]["Exec"],
            f"{prefix}/bin/amberquill",
        )

    def test_staged_files_name_the_paths_after_installation(self):
        stage = self.folder / "stage"
        install("/opt/amberquill", DESTDIR=str(stage))
        self.assertEqual(files_below(stage / "opt/amberquill"), FILES)
        service = entry_file(stage / f"opt/amberquill/share/dbus-1/services/{ID}.service")
        self.assertEqual(service["D-BUS Service"]["Exec"], "/opt/amberquill/bin/amberquill")

    def test_a_path_that_an_entry_cannot_contain_is_refused(self):
        with self.assertRaises(subprocess.CalledProcessError):
            install(self.folder / "100%")

    def test_kde_finds_the_same_entry_among_its_shortcuts(self):
        self.assertTrue((self.prefix / f"share/kglobalaccel/{ID}.desktop").samefile(self.entry_path))
        self.assertEqual(self.entry["Desktop Action toggle"]["X-KDE-Shortcuts"], "Ctrl+Alt+Space")

    def test_all_texts_are_there_in_all_languages(self):
        wanted = {
            "Desktop Entry": ("GenericName", "Comment", "Keywords"),
            **{f"Desktop Action {action}": ("Name",) for action in ("toggle", "show", "hide")},
        }
        for group, keys in wanted.items():
            for key in keys:
                texts = {self.entry[group][f"{key}[{language}]"] for language in LANGUAGES}
                texts.add(self.entry[group][key])
                self.assertEqual(len(texts), len(LANGUAGES) + 1, f"{key} of {group}")
        translated = {key for key in self.entry["Desktop Entry"] if key.startswith("Name[")}
        self.assertEqual(translated, set(), "the name is the same everywhere")

    def test_each_icon_has_the_size_of_its_folder(self):
        for edge in EDGES:
            data = (self.prefix / f"share/icons/hicolor/{edge}x{edge}/apps/{ID}.png").read_bytes()
            self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack(">II", data[16:24]), (edge, edge))
            # Colours and transparency, eight bits each.
            self.assertEqual(tuple(data[24:26]), (8, 6))

    def test_the_entry_names_the_icon(self):
        self.assertEqual(self.entry["Desktop Entry"]["Icon"], ID)


if __name__ == "__main__":
    unittest.main()
