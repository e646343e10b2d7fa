"""The processes that decode icons for a launcher."""

import os
import random
import signal
from pathlib import Path

from harness import Watch

NAME = "amberquill-icons"
NAME_SEEN = NAME[:15]  # the kernel cuts names


def status(pid):
    """The fields of /proc/PID/status, by name; empty if the process has ended."""
    try:
        text = Path(f"/proc/{pid}/status").read_text(encoding="utf-8", errors="replace")
    except OSError:
        return {}
    fields = dict(line.split(":\t", 1) for line in text.splitlines() if ":\t" in line)
    return {} if fields.get("State", "Z")[0] in "ZX" else fields


def descendants(pid):
    """The ids of a process's running descendants."""
    parents = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit() and (fields := status(entry)):
            parents.setdefault(int(fields["PPid"]), []).append(int(entry))
    found, left = [], [pid]
    while left:
        children = parents.get(left.pop(), [])
        found += children
        left += children
    return found


def workers_of(launcher):
    """The ids of the running workers of a launcher."""
    return [pid for pid in descendants(launcher.pid) if status(pid).get("Name") == NAME_SEEN]


def is_running(pid):
    return bool(status(pid))


class WorkersCounted(Watch):
    """Counts the workers."""

    def __init__(self, launcher):
        super().__init__()
        self._launcher = launcher
        self.seen = set()  # ids
        self.most = 0  # at once

    def _watch(self):
        while not self._stop.is_set():
            self.look(workers_of(self._launcher))
            self._stop.wait(self.pause())

    def pause(self):
        return 0.01

    def look(self, workers):
        self.seen.update(workers)
        self.most = max(self.most, len(workers))


class WorkersKilled(WorkersCounted):
    """Kills workers at random times, with random signals."""

    def __init__(self, launcher, seed):
        super().__init__(launcher)
        self._random = random.Random(seed)
        self.killed = 0

    def pause(self):
        return self._random.uniform(0, 0.4)

    def look(self, workers):
        super().look(workers)
        if workers:
            try:
                os.kill(self._random.choice(workers), self._random.choice((signal.SIGKILL, signal.SIGTERM)))
                self.killed += 1
            except ProcessLookupError:
                pass  # it has ended
