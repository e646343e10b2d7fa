#!/usr/bin/env python3
"""Shortens ctest's output: ctest --output-on-failure ... | scripts/test-report.py

Passed tests are left out. Before the summary, all failed cases are listed with their tests, also cases that crashed
their test.
"""

import re
import sys

MOST_NAMED = 25  # so that the list and ctest's own summary fit on a screen

NOISE = re.compile(r" +Start +\d+: | *\d+/\d+ Test .* Passed ")
RESULT = re.compile(r" *\d+/\d+ Test +#\d+: (\S+) \.*(.*)")
SUMMARY = re.compile(r"\d+% tests passed")

# GoogleTest's lines about cases, and the other runners' lines about failures.
CASE_BEGINS = re.compile(r"\[ RUN      \] (.+)")
CASE_PASSED = re.compile(r"\[       OK \] ")
CASE_FAILED = re.compile(r"\[  FAILED  \] (\S+\.\S+?),? ")
GOOGLETEST_BOOKKEEPING = re.compile(r"\[(-{10}|={10}|  PASSED  |  FAILED  )\] |Note: ")
OTHER_FAILURES = (
    re.compile(r"(?:FAIL|ERROR): (.+)"),  # unittest
    re.compile(r"SUMMARY: (.+)"),  # sanitizers and libFuzzer
)


class FailedTest:
    """The output of one failed test."""

    def __init__(self, name, how):
        self.name = name
        self.how = " ".join(how.split())
        self.cases = []
        self._open = None  # the case that has begun and not ended
        self._held = []  # its lines, shown only if it fails

    def read(self, line):
        """Returns the lines to show."""
        if begins := CASE_BEGINS.match(line):
            self._open, self._held = begins[1], [line]
            return []
        if CASE_PASSED.match(line):
            self._open, self._held = None, []
            return []
        if failed := CASE_FAILED.match(line + " "):
            shown = [*self._held, line] if self._open else []
            self._open, self._held = None, []
            self._name(failed[1])
            return shown
        if GOOGLETEST_BOOKKEEPING.match(line):
            return []
        for pattern in OTHER_FAILURES:
            if found := pattern.match(line):
                self._name(found[1])
        if self._open:
            self._held.append(line)
            return []
        return [line]

    def end(self):
        """Returns the remaining lines: those of a case that crashed the test."""
        if self._open:
            self._name(self._open + " (did not end)")
        held, self._open, self._held = self._held, None, []
        return held

    def _name(self, case):
        if case not in self.cases:
            self.cases.append(case)

    def report(self):
        return [f"  {self.name}: {case}" for case in self.cases] or [f"  {self.name}: {self.how}"]


def shorten(lines):
    """Yields the lines of ctest's output to show."""
    failed = []
    current = None
    for line in lines:
        line = line.rstrip("\n")
        is_passed = NOISE.match(line)
        result = None if is_passed else RESULT.match(line)
        summary = SUMMARY.match(line)
        if current and (is_passed or result or summary):
            yield from current.end()
            current = None
        if is_passed:
            continue
        if result:
            current = FailedTest(result[1], result[2])
            failed.append(current)
        elif summary and failed:
            named = [entry for test in failed for entry in test.report()]
            yield "Failed:"
            yield from named[:MOST_NAMED]
            if len(named) > MOST_NAMED:
                yield f"  and {len(named) - MOST_NAMED} more"
            yield ""
        if current and not result:
            yield from current.read(line)
        else:
            yield line


def main():
    sys.stdin.reconfigure(errors="replace")
    for line in shorten(sys.stdin):
        print(line, flush=True)


if __name__ == "__main__":
    main()
