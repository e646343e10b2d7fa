#!/usr/bin/env python3
"""Measures the cost of each motion of the launcher: processor time and frame times.

200 applications with icons of 256 pixels, two folders, under Xvfb and openbox, drawn by Qt's software renderer. Each
movement is made by real keys and clicks, several times. Run it on a quiet machine:

    tests/bench/frames.py [program] [width height]
"""

import json
import re
import statistics
import subprocess
import sys
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "desktop"))
sys.path.insert(0, str(ROOT / "tests" / "bench"))

from harness.x11 import X11Session  # noqa: E402
from start import cpu_seconds, install  # noqa: E402

REPEATS = 8
MOTION = 1.1  # seconds after which everything rests again


class Frames:
    """The seconds of each frame, from the program's output."""

    def __init__(self, stream):
        self.taken = []
        threading.Thread(target=self._read, args=(stream,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            frame = re.search(r"frame \S+ \w+ (\S+)", line)
            if frame:
                self.taken.append(float(frame[1]))


def xdotool(session, *arguments):
    subprocess.run(["xdotool", *map(str, arguments)], env=session.environment, check=True)


def measured(process, frames, name, move):
    """Makes the movement and prints its cost."""
    cost, first = 0, len(frames.taken)
    for _ in range(REPEATS):
        cpu = cpu_seconds(process.pid)
        move()
        time.sleep(MOTION)
        cost += cpu_seconds(process.pid) - cpu
    taken = sorted(seconds * 1000 for seconds in frames.taken[first:])
    print(
        f"{name:22} {len(taken) / REPEATS:4.0f} frames, {cost / len(taken) * 1000:5.2f} ms of CPU each; "
        f"a frame takes {statistics.median(taken):4.1f} ms, 99 % below {taken[int(len(taken) * 0.99)]:4.1f} ms, "
        f"worst {taken[-1]:4.1f} ms"
    )


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build" / "release" / "amberquill")
    width, height = (int(a) for a in sys.argv[2:4]) if len(sys.argv) > 3 else (1920, 1080)
    with X11Session(width, height) as session:
        data = Path(session.environment["XDG_DATA_HOME"])
        install(data, 200)
        paths = sorted(str(path) for path in (data / "applications").glob("*.desktop"))
        folder = {"id": "3F2504E0-4F89-11D3-9A0C-0305E82C3301", "name": "Folder", "apps": paths[:20]}
        layout = data / "Amberquill" / "layout.json"
        layout.parent.mkdir()
        layout.write_text(
            json.dumps([{"folder": {"_0": folder}}] + [{"app": {"_0": path}} for path in paths[20:]])
        )
        environment = dict(session.environment, QT_LOGGING_RULES="amberquill.frames=true", LANG="C.UTF-8")
        process = subprocess.Popen([program], env=environment, stderr=subprocess.PIPE, text=True)
        frames = Frames(process.stderr)
        time.sleep(4)

        margin = max(width * 0.08, 70)
        first = (margin + (width - 2 * margin) / 14, 120 + (height - 192) / 10)
        second = (margin + (width - 2 * margin) / 14 * 3, first[1])
        keys = iter(["Right", "Left"] * REPEATS)
        measured(process, frames, "page turn", lambda: xdotool(session, "key", next(keys)))

        xdotool(session, "mousemove", *map(round, first))
        opening = iter([True, False] * REPEATS)

        def fold():
            xdotool(session, "click", 1) if next(opening) else xdotool(session, "key", "Escape")

        measured(process, frames, "folder open and close", fold)

        def reflow():
            xdotool(session, "mousemove", *map(round, second), "mousedown", 1)
            for step in range(1, 11):
                xdotool(session, "mousemove", round(second[0] + step * 30), round(second[1] + step * 45))
            time.sleep(0.5)
            xdotool(session, "mouseup", 1)

        measured(process, frames, "drag, reflow and drop", reflow)

        toggle = ["gdbus", "call", "--session", "--dest", "org.amberquill.Amberquill"]
        toggle += ["--object-path", "/org/amberquill/Amberquill"]
        toggle += ["--method", "org.freedesktop.Application.ActivateAction", "toggle", "[]", "{}"]

        def enter_or_leave():
            subprocess.run(toggle, env=session.environment, check=True, stdout=subprocess.DEVNULL)

        measured(process, frames, "exit and entrance", enter_or_leave)
        rollup = Path(f"/proc/{process.pid}/smaps_rollup").read_text()
        memory = int(re.search(r"\nPss:\s+(\d+)", rollup)[1]) / 1024
        print(f"PSS {memory:.1f} MB")
        process.terminate()
        process.wait()


if __name__ == "__main__":
    main()
