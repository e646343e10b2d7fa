#!/usr/bin/env python3
"""Measures the memory for decoding 500 icons.

500 applications, half of them with PNG icons of 256 pixels and half with SVG icons of the theme Papirus, under Xvfb and
openbox at 1920 x 1080. Every page is turned to, with nothing kept from an earlier run. Prints the memory (PSS, and what is
private and changed) of the launcher before and after, hidden, and the largest of a process that decodes for it:

    tests/bench/icons.py [program]
"""

import re
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "desktop"))
sys.path.insert(0, str(ROOT / "tests" / "bench"))

from harness.x11 import X11Session  # noqa: E402
from start import end, install, one_start  # noqa: E402

APPLICATIONS = 500
PAGES = -(-APPLICATIONS // 35)
TURN = 1.2  # seconds after which a page is at rest and its neighbours are decoded
REST = 12  # seconds after which caches are freed


def memory(pid):
    """Memory in megabytes: PSS; private dirty."""
    try:
        rollup = Path(f"/proc/{pid}/smaps_rollup").read_text()
        return tuple(int(re.search(rf"\n{name}:\s+(\d+)", rollup)[1]) / 1024 for name in ("Pss", "Private_Dirty"))
    except (OSError, TypeError):
        return 0, 0  # it has ended


def decoders(pid):
    """The processes that decode for the launcher."""
    children = Path(f"/proc/{pid}/task").glob("*/children")
    return [int(child) for path in children for child in path.read_text().split()]


def said(name, values):
    print(f"{name:28} PSS {values[0]:5.1f} MB, private and changed {values[1]:5.1f} MB")


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build" / "release" / "amberquill")
    with X11Session(1920, 1080) as session:
        data = Path(session.environment["XDG_DATA_HOME"])
        install(data, APPLICATIONS // 2, "png")
        install(data, APPLICATIONS // 2, "svg")
        environment = dict(session.environment, QT_LOGGING_RULES="amberquill.frames=true", LANG="C.UTF-8")
        process, _, _ = one_start(program, environment)
        time.sleep(3)
        said("launcher, its first page", memory(process.pid))
        largest, most = (0, 0), 0
        for _ in range(PAGES):
            subprocess.run(["xdotool", "key", "Right"], env=session.environment, check=True)
            deadline = time.monotonic() + TURN
            while time.monotonic() < deadline:
                running = decoders(process.pid)
                most = max(most, len(running))
                largest = max([largest, *map(memory, running)])
                time.sleep(0.02)
        said("launcher, all pages seen", memory(process.pid))
        if most:
            said(f"the largest of {most} decoders", largest)
        time.sleep(REST)
        said(f"launcher at rest, {len(decoders(process.pid))} decoders", memory(process.pid))
        subprocess.run([program, "--hide"], env=session.environment, check=True)
        time.sleep(4)
        said("launcher, hidden", memory(process.pid))
        end(process)


if __name__ == "__main__":
    main()
