#!/usr/bin/env python3
"""Makes ctest's output short and its end say everything: ctest --output-on-failure ... | scripts/test-report.py

What passes is left out. Before the summary stands each case that failed, with the test it belongs to, also where the
test died of it.
"""

import re
import sys

MOST_NAMED = 25  # so that all of it fits on a screen with ctest's own summary

NOISE = re.compile(r" +Start +\d+: | *\d+/\d+ Test .* Passed ")
RESULT = re.compile(r" *\d+/\d+ Test +#\d+: (\S+) \.*(.*)")
SUMMARY = re.compile(r"\d+% tests passed")

# How GoogleTest tells of cases, and the other runners of what failed.
CASE_BEGINS = re.compile(r"\[ RUN      \] (.+)")
CASE_PASSED = re.compile(r"\[       OK \] ")
CASE_FAILED = re.compile(r"\[  FAILED  \] (\S+\.\S+?),? ")
GOOGLETEST_BOOKKEEPING = re.compile(r"\[(-{10}|={10}|  PASSED  |  FAILED  )\] |Note: ")
OTHER_FAILURES = (
    re.compile(r"(?:FAIL|ERROR): (.+)"),  # unittest
    re.compile(r"SUMMARY: (.+)"),  # sanitizers and libFuzzer
)


class FailedTest:
    """The output of one test that failed, as it is read."""

    def __init__(self, name, how):
        self.name = name
        self.how = " ".join(how.split())
        self.cases = []
        self._open = None  # the case that has begun and not ended
        self._held = []  # its lines, which matter only if it fails

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
        """Returns the lines that are left: those of a case that the test died in."""
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
    """Yields the lines to show of those that ctest prints."""
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
