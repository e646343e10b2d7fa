"""The list of scripts/mutate.sh matches the sources, and a list that does not match is refused."""

import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "scripts"))
sys.dont_write_bytecode = True

import mutations  # noqa: E402

FLOORS = ("platform", "platform/linux", "localization", "data", "motion", "model", "views", "window", "updates", "shell")
FILE = "src/a.cpp"


class List(unittest.TestCase):
    def test_each_mistake_can_be_made_in_one_place(self):
        entries = mutations.read_list(PROJECT / mutations.LIST)
        self.assertEqual([error for each in entries if (error := each.error(PROJECT))], [])

    def test_it_covers_every_floor(self):
        files = [each.file for each in mutations.read_list(PROJECT / mutations.LIST)]
        self.assertGreaterEqual(len(files), 60)
        for floor in FLOORS:
            self.assertTrue(any(file.startswith(f"src/{floor}/") for file in files), floor)
        self.assertTrue(any(file.endswith(".qml") for file in files))

    def test_each_test_executable_exists(self):
        text = "".join(path.read_text(encoding="utf-8") for path in (PROJECT / "tests").rglob("CMakeLists.txt"))
        for each in mutations.read_list(PROJECT / mutations.LIST):
            if each.test != mutations.DESKTOP:
                self.assertIn(f"amberquill_test({each.test}\n", text)


class Script(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.project = Path(folder.name)
        for name in ("mutate.sh", "mutations.py"):
            (self.project / "scripts").mkdir(exist_ok=True)
            shutil.copy(PROJECT / "scripts" / name, self.project / "scripts" / name)
        self.write(FILE, "one\ntwo\ntwo\n")

    def write(self, name, text):
        path = self.project / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def check(self, text):
        """Whether the list is accepted, and the output."""
        self.write(mutations.LIST, text)
        command = [self.project / "scripts/mutate.sh", "--check"]
        answer = subprocess.run(command, capture_output=True, text=True, check=False)
        return answer.returncode == 0, answer.stdout + answer.stderr

    def test_a_line_with_one_match_is_accepted(self):
        self.assertEqual(self.check(f"# note\n[{FILE}]\na title\n- one\n+ \n? unit_a\n"), (True, "1 mutations\n"))

    def test_a_line_without_a_match_or_with_two_is_refused(self):
        for old, count in (("three", 0), ("two", 2)):
            accepted, said = self.check(f"[{FILE}]\na title\n- {old}\n+ \n? unit_a A.*\n")
            self.assertFalse(accepted)
            self.assertIn(f"{mutations.LIST}:2: error: `{old}` stands {count} times in {FILE}", said)

    def test_a_missing_file_is_refused(self):
        accepted, said = self.check("[src/b.cpp]\na title\n- one\n+ \n? unit_a\n")
        self.assertFalse(accepted)
        self.assertIn("`one` stands 0 times in src/b.cpp", said)

    def test_an_entry_of_another_form_is_refused(self):
        for entry in ("a title\n- one\n? unit_a\n", "- one\n+ two\n? unit_a\n", "a title\n- one\n+ one\n? unit_a\n"):
            accepted, said = self.check(f"[{FILE}]\n{entry}")
            self.assertFalse(accepted)
            self.assertIn(f"{mutations.LIST}:2: error:", said)


if __name__ == "__main__":
    unittest.main()
