#!/usr/bin/env python3
"""Checks that the launcher's memory does not grow when it is used all day.

Under Xvfb and openbox, with 2,000 applications whose icons are all different, a random generator with a fixed seed
turns pages, changes the monitors' sizes, installs and removes applications, drags, searches, opens folders, menus and
dialogs, changes grid, background and language, and shows and hides the launcher. Each minute the launcher is hidden;
once it rests, a line with its costs is printed, on the first page with the usual screen, grid and language. The first
minute begins with each action once, so that everything loaded at first use is loaded. In the end the launcher may need
at most a tenth more memory (PSS) than after the first two minutes.

    tests/bench/soak.py [--minutes 30] [--seed 1] [--build build/release] [--scenario NAME]

A scenario repeats one action and prints the launcher's costs before and after. A build with a
sanitizer has no limit of memory, but any output of it is a failure. The launcher's output is kept in the build's
folder `soak`.
"""

import argparse
import os
import random
import re
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "desktop"))

from harness.waiting import until  # noqa: E402
from harness.x11 import X11Session  # noqa: E402
from launcher.case import WINDOW_CLASS  # noqa: E402
from start import cpu_seconds  # noqa: E402
from soak_applications import SoakApplications  # noqa: E402
from soak_x_resources import x_resources  # noqa: E402
from soak_user import LARGEST, PATIENCE, SoakUser  # noqa: E402

APPLICATIONS = 2000
MINUTE = 60
LOOK = 18  # seconds for measuring the costs
REST = 8  # seconds without work after which the hidden launcher rests: longer than any of its timers
ALLOWED_GROWTH = 1.10

# The actions of a mixed minute, with their relative frequency.
ACTS = {
    "turn_pages": 8,
    "come_and_go": 6,
    "search": 5,
    "drag": 5,
    "open_folder": 4,
    "browse_menu": 2,
    "launch": 3,
    "change_monitors": 3,
    "install_and_remove": 2,
    "change_theme": 2,
    "change_grid": 1,
    "change_language": 1,
    "open_dialog": 2,
    "sort": 1,
}

# By name: an action and its number of repetitions.
SCENARIOS = {
    "paging": ("page_through", 2),
    "monitors": ("change_monitors", 90),
    "applications": ("install_and_remove", 24),
    "drags": ("drag", 120),
    "showing": ("come_and_go", 40),
}


class Costs:
    """The launcher's memory and resources at one moment, and its processor time so far."""

    def __init__(self, session, pid):
        rollup = Path(f"/proc/{pid}/smaps_rollup").read_text()
        self.pss = self._megabytes(rollup, "Pss")
        self.dirty = self._megabytes(rollup, "Private_Dirty")
        self.descriptors = len(os.listdir(f"/proc/{pid}/fd"))
        self.threads = len(os.listdir(f"/proc/{pid}/task"))
        self.x_resources, self.x_megabytes = x_resources(session.display, pid)
        self.cpu = cpu_seconds(pid)

    @staticmethod
    def _megabytes(rollup, field):
        return int(re.search(rf"\n{field}:\s+(\d+)", rollup)[1]) / 1024


class Soak:
    def __init__(self, session, build, chance):
        self._session = session
        applications = SoakApplications(session)
        applications.add(APPLICATIONS)
        self._launcher = session.start(build / "amberquill")
        self._user = SoakUser(session, applications, self._launcher, chance)
        self._chance = chance
        self._last_cpu = 0

    def begin(self):
        self._session.window_of_class(WINDOW_CLASS, PATIENCE)
        self._user.usual_screen()
        self._user.expect_shown()

    def row(self, name):
        """Hides the launcher, waits until it rests, and prints its costs."""
        self._user.hide()
        self._wait_until_it_rests()
        costs = Costs(self._session, self._launcher.pid)
        print(
            f"{name:>16} | {costs.pss:7.1f} | {costs.dirty:7.1f} | {costs.descriptors:11} | {costs.threads:7} | "
            f"{costs.x_resources:11} | {costs.x_megabytes:9.1f} | {costs.cpu - self._last_cpu:7.1f}",
            flush=True,
        )
        self._last_cpu = costs.cpu
        return costs

    def _wait_until_it_rests(self):
        cpu, since = None, time.monotonic()

        def rests():
            nonlocal cpu, since
            used = cpu_seconds(self._launcher.pid)
            if used != cpu:
                cpu, since = used, time.monotonic()
            return time.monotonic() - since > REST

        until(rests, "the launcher's rest", PATIENCE)

    def everything(self, minutes):
        """Returns the costs after each minute."""
        rows = []
        begin = time.monotonic()
        for minute in range(1, minutes + 1):
            end = begin + minute * MINUTE - LOOK
            if minute == 1:
                self._user.do("see_everything")
                for act in ACTS:
                    self._user.do(act)
            while time.monotonic() < end:
                self._user.do(*self._chance.choices(list(ACTS), weights=ACTS.values()))
            self._user.usual_state()
            rows.append(self.row(f"minute {minute}"))
        return rows

    def scenario(self, name):
        act, times = SCENARIOS[name]
        for _ in range(times):
            self._user.do(act)
        self._user.usual_screen()
        self._user.usual_grid()

    def end(self):
        """Ends the launcher and returns what failed."""
        done = ", ".join(f"{name.replace('_', ' ')} {count}" for name, count in sorted(self._user.done.items()))
        print(f"done: {done}")
        status = self._launcher.terminate(PATIENCE)
        return self._user.faults + ([] if status == 0 else [f"it ended with {status}"])

    def said(self):
        return self._launcher.lines


HEADING = (
    "                 |  PSS MB |   dirty | descriptors | threads | X resources | X pixmaps | CPU s\n"
    "-----------------|---------|---------|-------------|---------|-------------|-----------|--------"
)


def has_sanitizer(program):
    content = program.read_bytes()
    return b"__asan_init" in content or b"__tsan_init" in content


def judged(rows):
    """The failures in the memory after each minute."""
    if len(rows) < 3:
        print("no verdict on the memory: that takes three minutes")
        return []
    first, last = rows[1].pss, rows[-1].pss
    text = f"PSS after {len(rows)} minutes is {last / first * 100:.0f} % of that after two"
    print(text)
    return [text] if last > first * ALLOWED_GROWTH else []


def run(arguments):
    build = arguments.build.resolve()
    sanitized = has_sanitizer(build / "amberquill")
    logs = build / "soak"
    logs.mkdir(exist_ok=True)
    faults = []
    with X11Session(*LARGEST) as session:
        soak = Soak(session, build, random.Random(arguments.seed))
        try:
            soak.begin()
            print(HEADING)
            soak.row("fresh")
            if arguments.scenario == "everything":
                rows = soak.everything(arguments.minutes)
                faults += [] if sanitized else judged(rows)
            else:
                soak.scenario(arguments.scenario)
                soak.row(arguments.scenario)
            faults += soak.end()
        except BaseException:
            session.screenshot().save(logs / f"{arguments.scenario}.png")
            print(f"the screen: {logs / arguments.scenario}.png", file=sys.stderr)
            raise
        finally:
            log = logs / f"{arguments.scenario}.log"
            log.write_text("\n".join(soak.said()), encoding="utf-8")
    if soak.said():
        faults.append(f"it printed {len(soak.said())} lines, kept in {log}; the first: {soak.said()[0]}")
    return faults


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "release", help="the folder of the build")
    parser.add_argument("--minutes", type=int, default=30)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--scenario", choices=["everything", *SCENARIOS], default="everything")
    faults = run(parser.parse_args())
    for fault in faults:
        print(f"WRONG: {fault}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
