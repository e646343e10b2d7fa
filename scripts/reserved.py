#!/usr/bin/env python3
"""Reports each own timer, thread, clock or lifetime guard in src/, and fails if there is one.

    scripts/reserved.py [PROJECT]

Time, timers and background work come from platform/MainQueue.h, late answers from platform/Context.h. The files that
need something else are listed below, each with its reason. A listed file without such a use is a fault, too.
"""

import re
import sys
from pathlib import Path

COMMENT = re.compile(r"//.*")

# Reserved names: pattern, replacement, and the files that may use them, with the reason.
QUEUE = "src/platform/linux/queue/EventLoopQueue.cpp"
RESERVED = {
    "timer": (
        re.compile(r"\bQ(?:Timer|BasicTimer|ElapsedTimer)\b|\bstartTimer\("),
        "DelayedWork from MainQueue::postAfter",
        {QUEUE: "is MainQueue"},
    ),
    "thread": (
        re.compile(r"\bstd::(?:thread|jthread|async)\b|\bQThreadPool\b|\bQtConcurrent\b|\bQThread::create\b"),
        "MainQueue::compute or startThread",
        {
            "src/platform/common/Thread.cpp": "is startThread",
            "src/platform/linux/decoder/process/main.cpp": "limits the threads of Qt's own image readers",
        },
    ),
    "clock": (
        re.compile(r"\b(?:steady|system|high_resolution)_clock\b|\bQDateTime::current|\bclock_gettime\("),
        "MainQueue::now, or QDeadlineTimer for a wait that blocks",
        {
            QUEUE: "is MainQueue",
            "src/platform/linux/applications/icons/workers/IconWorkerPool.h": "works on the threads of a lane, away from MainQueue",
            "src/platform/linux/applications/icons/workers/WorkerProcess.cpp": "reads the processor time of another process",
            "src/platform/linux/decoder/process/RequestLoop.cpp": "reads its own processor time",
            "src/platform/linux/files/InotifyFolderWatcher.cpp": "compares the time of day with those of folders",
        },
    ),
    "guard": (
        re.compile(r"\bQPointer(?:<\w+>)?[({]this\b"),
        "Context::bind",
        {},
    ),
}


def uses(source, pattern):
    """File, line number and word of each use."""
    for path in sorted(source.rglob("*")):
        if path.suffix in (".h", ".cpp"):
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                found = pattern.search(COMMENT.sub("", line))
                if found and not line.lstrip().startswith("#include"):
                    yield path.relative_to(source.parent).as_posix(), number, found[0]


def faults(source):
    for name, (pattern, instead, allowed) in RESERVED.items():
        unused = set(allowed)
        for file, number, word in uses(source, pattern):
            unused.discard(file)
            if file not in allowed:
                yield f"{file}:{number}: error: {word}: a {name} of its own; use {instead}"
        for file in sorted(unused):
            yield f"scripts/reserved.py:1: error: {file} is listed for a {name} and has none"


def main():
    root = Path(__file__).resolve().parent.parent
    found = list(faults((Path(sys.argv[1]) if len(sys.argv) > 1 else root) / "src"))
    print("\n".join(found) or "nothing reserved is used elsewhere")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
