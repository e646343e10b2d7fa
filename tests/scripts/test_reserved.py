"""scripts/reserved.py fails on a timer, a thread, a clock or a guard where MainQueue and Context serve."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
FILE = "data/GridMetrics.cpp"


class Reserved(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name)
        shutil.copytree(PROJECT / "src", self.project / "src")

    def append(self, line):
        """Adds a line to a file that may use no reserved name. Returns its number."""
        path = self.project / "src" / FILE
        text = path.read_text(encoding="utf-8") + line + "\n"
        path.write_text(text, encoding="utf-8")
        return text.count("\n")

    def run_script(self):
        command = [sys.executable, "-B", PROJECT / "scripts/reserved.py", self.project]
        return subprocess.run(command, capture_output=True, text=True, check=False)

    def test_the_project_passes(self):
        answer = self.run_script()
        self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)

    def test_reserved_names_fail(self):
        lines = (
            ("    QTimer timer;", "QTimer"),
            ("    timer_ = startTimer(10);", "startTimer("),
            ("    std::thread([] {}).detach();", "std::thread"),
            ("    auto answer = std::async(read);", "std::async"),
            ("    QThreadPool::globalInstance();", "QThreadPool"),
            ("    const auto now = std::chrono::steady_clock::now();", "steady_clock"),
            ("    const auto now = QDateTime::currentDateTime();", "QDateTime::current"),
            ("    [self = QPointer(this)] {}", "QPointer(this"),
            ("    [self = QPointer<Grid>(this)] {}", "QPointer<Grid>(this"),
        )
        places = [(self.append(line), word) for line, word in lines]
        answer = self.run_script()
        self.assertEqual(answer.returncode, 1)
        for number, word in places:
            self.assertIn(f"src/{FILE}:{number}: error: {word}: ", answer.stdout)

    def test_comments_and_guards_of_others_pass(self):
        self.append("    // A QTimer would wake the processor.")
        self.append("    QPointer<QDialog> dialog;")
        self.assertEqual(self.run_script().returncode, 0)

    def test_a_listed_file_without_a_use_fails(self):
        for path in self.project.rglob("EventLoopQueue.*"):
            path.write_text("#pragma once\n", encoding="utf-8")
        answer = self.run_script()
        self.assertEqual(answer.returncode, 1)
        self.assertRegex(answer.stdout, r"src/\S*EventLoopQueue\.\w+ is listed for a timer and has none")


if __name__ == "__main__":
    unittest.main()
