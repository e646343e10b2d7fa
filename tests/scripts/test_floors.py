"""scripts/floors.py fails on an include that breaks the floors, and names its line."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]


class Floors(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name)
        shutil.copytree(PROJECT / "src", self.project / "src")

    def append(self, file, line):
        """Adds a line to a file. Returns its number."""
        path = self.project / "src" / file
        text = path.read_text(encoding="utf-8") + line + "\n"
        path.write_text(text, encoding="utf-8")
        return text.count("\n")

    def replace(self, file, old, new):
        path = self.project / "src" / file
        text = path.read_text(encoding="utf-8")
        self.assertEqual(text.count(old), 1, f"{old} in {file}")
        path.write_text(text.replace(old, new), encoding="utf-8")

    def run_script(self):
        command = [sys.executable, "-B", PROJECT / "scripts/floors.py", self.project]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def assert_fails_with(self, *texts):
        answer = self.run_script()
        self.assertEqual(answer.returncode, 1, answer.stdout + answer.stderr)
        for text in texts:
            self.assertIn(text, answer.stdout)

    def test_the_project_passes(self):
        answer = self.run_script()
        self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)

    def test_an_include_that_points_up_fails(self):
        line = self.append("data/GridMetrics.h", '#include "window/LauncherKeys.h"')
        self.assert_fails_with(
            f'src/data/GridMetrics.h:{line}: error: "window/LauncherKeys.h" points up:'
            " amberquill_window is above amberquill_data"
        )

    def test_an_include_in_angle_brackets_is_read_too(self):
        line = self.append("data/GridMetrics.h", "#  include <model/LauncherModel.h>")
        self.assert_fails_with(f'src/data/GridMetrics.h:{line}: error: "model/LauncherModel.h" points up')

    def test_an_include_of_a_library_that_is_not_linked_fails(self):
        line = self.append("motion/Animations.h", '#include "data/GridMetrics.h"')
        self.assert_fails_with(
            f'src/motion/Animations.h:{line}: error: "data/GridMetrics.h": amberquill_motion does not link amberquill_data'
        )

    def test_only_main_includes_files_of_platform_linux(self):
        line = self.append("shell/AppDelegate.cpp", '#include "platform/linux/files/RegularFile.h"')
        self.assert_fails_with(
            f'src/shell/AppDelegate.cpp:{line}: error: "platform/linux/files/RegularFile.h":'
            " outside platform/linux/ only shell/main.cpp may include it"
        )

    def test_a_room_of_the_desktop_includes_no_room_above_it(self):
        line = self.append("platform/linux/files/RegularFile.h", '#include "platform/linux/x11/XcbReply.h"')
        self.assert_fails_with(
            f'src/platform/linux/files/RegularFile.h:{line}: error: "platform/linux/x11/XcbReply.h" points up:'
            " amberquill_linux_x11 is above amberquill_linux_files"
        )

    def test_a_library_that_links_one_above_it_fails(self):
        self.replace("motion/CMakeLists.txt", "PUBLIC amberquill_platform", "PUBLIC amberquill_platform amberquill_views")
        self.assert_fails_with(
            "src/motion/CMakeLists.txt:1: error: amberquill_motion links amberquill_views, which is above it"
        )

    def test_files_that_include_each_other_fail(self):
        self.append("data/GridMetrics.h", '#include "data/FolderMetrics.h"')
        self.append("data/FolderMetrics.h", '#include "data/GridMetrics.h"')
        answer = self.run_script()
        self.assertEqual(answer.returncode, 1)
        self.assertRegex(answer.stdout, r"src/data/(Grid|Folder)Metrics\.h:\d+: error: includes in a cycle: .* > ")

    def test_a_file_that_no_library_lists_fails(self):
        (self.project / "src/data/Forgotten.h").write_text("#pragma once\n", encoding="utf-8")
        self.assert_fails_with("src/data/Forgotten.h:1: error: no CMakeLists.txt lists this file")


if __name__ == "__main__":
    unittest.main()
