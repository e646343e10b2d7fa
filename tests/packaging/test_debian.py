"""The Debian package that `cpack` makes, checked with lintian."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from test_installation import FILES

BUILD = Path(os.environ.get("AMBERQUILL_BUILD", "build/release")).resolve()
CPACK = os.environ.get("AMBERQUILL_CPACK", "cpack")


def run(*command, **settings):
    return subprocess.run(command, check=True, capture_output=True, text=True, **settings).stdout


class DebianPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        # Packed files are readable by all users, whatever the user's umask.
        run(CPACK, "-G", "DEB", "-B", folder, cwd=BUILD, umask=0o022)
        (cls.package,) = Path(folder).glob("*.deb")

    def field(self, name):
        return run("dpkg-deb", "--field", self.package, name).strip()

    def test_it_contains_the_installed_files(self):
        listed = run("dpkg-deb", "--contents", self.package).splitlines()
        paths = {line.split(maxsplit=5)[5].split(" -> ")[0] for line in listed if not line.startswith("d")}
        self.assertEqual(paths, {f"./usr/{file}" for file in FILES})
        self.assertEqual({line.split()[1] for line in listed}, {"root/root"})

    def test_its_files_name_the_paths_after_installation(self):
        content = run("sh", "-c", 'dpkg-deb --fsys-tarfile "$1" | tar -xO --wildcards "*.service"', "-", self.package)
        self.assertIn("\nExec=/usr/bin/amberquill\n", content)

    def test_it_depends_on_the_libraries_and_the_modules_loaded_at_run_time(self):
        depends = {re.match(r"[\w.+-]+", part)[0] for part in self.field("Depends").split(", ")}
        libraries = {"libqt6core6", "libqt6gui6", "libqt6quick6", "libqt6svg6", "libqt6widgets6", "libplist3"}
        loaded = {
            "qml6-module-qtqml-workerscript",
            "qml6-module-qtquick",
            "qt6-image-formats-plugins",
            "qt6-translations-l10n",
            "qt6-wayland",
        }
        self.assertEqual((libraries | loaded) - depends, set())

    def test_it_is_named_after_the_program(self):
        architecture = run("dpkg", "--print-architecture").strip()
        self.assertEqual(self.field("Package"), "amberquill")
        self.assertEqual(self.package.name, f"amberquill_{self.field('Version')}_{architecture}.deb")

    def test_lintian_finds_no_errors(self):
        answer = subprocess.run(
            ["lintian", "--fail-on", "none", "--allow-root", self.package], check=True, capture_output=True, text=True
        )
        errors = [line for line in answer.stdout.splitlines() if line.startswith("E: ")]
        self.assertEqual(errors, [])


if __name__ == "__main__":
    unittest.main()
