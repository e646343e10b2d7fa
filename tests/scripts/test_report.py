"""scripts/test-report.py shortens ctest's output and names failed cases."""

import subprocess
import sys
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts/test-report.py"

SUMMARY = """
50% tests passed, 1 tests failed out of 2

Total Test time (real) =   3.21 sec
"""


def report(text):
    answer = subprocess.run([sys.executable, "-B", SCRIPT], input=text, capture_output=True, text=True, check=True)
    return answer.stdout


class Report(unittest.TestCase):
    def test_passed_cases_are_left_out(self):
        text = "    Start 1: unit_data\n1/1 Test #1: unit_data ......   Passed    0.51 sec\n\n100% tests passed, 0 tests failed"
        self.assertEqual(report(text), "\n100% tests passed, 0 tests failed\n")

    def test_a_case_that_fails_is_shown_and_named_before_the_summary(self):
        shown = report(
            "1/2 Test #1: asan.unit_data ......***Failed    0.51 sec\n"
            "[==========] Running 2 tests from 1 test suite.\n"
            "[ RUN      ] NameOrder.IsThatOfTheLocale\n"
            "noise of a case that passes\n"
            "[       OK ] NameOrder.IsThatOfTheLocale (0 ms)\n"
            "[ RUN      ] NameOrder.Other\n"
            "Other.cpp:12: Failure\n"
            "[  FAILED  ] NameOrder.Other (3 ms)\n"
            "[  FAILED  ] 1 test, listed below:\n"
            "[  FAILED  ] NameOrder.Other\n" + SUMMARY
        )
        self.assertIn("Other.cpp:12: Failure\n", shown)
        self.assertNotIn("noise", shown)
        self.assertNotIn("IsThatOfTheLocale", shown)
        self.assertIn("Failed:\n  asan.unit_data: NameOrder.Other\n\n50% tests passed", shown)

    def test_a_case_with_a_parameter_is_named_once(self):
        shown = report(
            "1/2 Test #1: view_tests.1 ......***Failed    0.51 sec\n"
            "[ RUN      ] Sizes/LabelTest.IsSharp/1280x800\n"
            "[  FAILED  ] Sizes/LabelTest.IsSharp/1280x800, where GetParam() = 8-byte object <00-05> (3 ms)\n"
            "[  FAILED  ] Sizes/LabelTest.IsSharp/1280x800, where GetParam() = 8-byte object <00-05>\n" + SUMMARY
        )
        self.assertEqual(shown.count("  view_tests.1: Sizes/LabelTest.IsSharp/1280x800\n"), 1)

    def test_a_case_that_ends_its_test_is_named(self):
        shown = report(
            "1/2 Test #1: tsan.unit_data ......***Failed    0.51 sec\n"
            "[ RUN      ] NameOrder.Dies\n"
            "WARNING: ThreadSanitizer: data race\n"
            "SUMMARY: ThreadSanitizer: data race NameOrder.cpp:3 in sorted\n" + SUMMARY
        )
        self.assertIn("WARNING: ThreadSanitizer: data race\n", shown)
        self.assertIn("  tsan.unit_data: ThreadSanitizer: data race NameOrder.cpp:3 in sorted\n", shown)
        self.assertIn("  tsan.unit_data: NameOrder.Dies (did not end)\n", shown)

    def test_a_python_case_is_named(self):
        shown = report(
            "1/2 Test #1: desktop.keys ......***Failed    0.51 sec\n"
            "FAIL: test_it (test_keys.Keys.test_it)\nTraceback\n" + SUMMARY
        )
        self.assertIn("Failed:\n  desktop.keys: test_it (test_keys.Keys.test_it)\n", shown)

    def test_a_test_without_output_is_named_with_its_exit(self):
        shown = report("1/2 Test #1: desktop.keys ......***Timeout 120.01 sec\n" + SUMMARY)
        self.assertIn("Failed:\n  desktop.keys: ***Timeout 120.01 sec\n", shown)

    def test_the_number_of_named_cases_is_limited(self):
        cases = "".join(f"[ RUN      ] A.B{n}\n[  FAILED  ] A.B{n} (1 ms)\n" for n in range(60))
        shown = report("1/2 Test #1: unit_data ......***Failed    0.51 sec\n" + cases + SUMMARY)
        self.assertIn("  unit_data: A.B24\n  and 35 more\n", shown)
        self.assertNotIn("unit_data: A.B25", shown)


if __name__ == "__main__":
    unittest.main()
