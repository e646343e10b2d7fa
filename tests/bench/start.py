#!/usr/bin/env python3
"""Measures the time of a start, and the program's memory and work after it.

For 200 and for 10,000 applications, under Xvfb and openbox at 1920 x 1080: the time from the process's start to the
first frame in which every icon is a real one, the memory (PSS), also once it is hidden, and the work of the idle
launcher. Also the time for 200 applications without stored icons, so that every icon is decoded: once with PNG
files of 256 pixels, once with SVG files of the theme Papirus. The file cache is warm. The first start, which creates
the layout, does not count. Run it on a quiet machine:

    tests/bench/start.py [program] [starts]
"""

import re
import shutil
import statistics
import struct
import subprocess
import sys
import time
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "desktop"))

from harness.x11 import X11Session  # noqa: E402

ICON_EDGE = 256
ICONS = 210
DRAWINGS = Path("/usr/share/icons/Papirus/64x64/apps")


def icon(number):
    """A PNG of one colour with a gradient, so that it does not compress to nothing."""
    rows = bytearray()
    for y in range(ICON_EDGE):
        rows.append(0)
        for x in range(ICON_EDGE):
            rows += bytes(((number * 53 + x // 2) % 256, (number * 97 + y // 2) % 256, (x ^ y) % 256, 255))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", ICON_EDGE, ICON_EDGE, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b"")


def drawings():
    """SVG icons from all over the theme."""
    files = sorted(path for path in DRAWINGS.glob("*.svg") if not path.is_symlink())
    if len(files) < ICONS:
        raise SystemExit(f"there are too few icons in {DRAWINGS}")
    return files[:: len(files) // ICONS][:ICONS]


def install(folder, count, ending="png"):
    """Installs applications with icons of one kind."""
    applications = folder / "applications"
    icons = folder / "bench-icons"
    applications.mkdir(parents=True, exist_ok=True)
    icons.mkdir(exist_ok=True)
    if ending == "svg":
        for number, drawing in enumerate(drawings()):
            shutil.copyfile(drawing, icons / f"{number}.svg")
    else:
        for number in range(ICONS):
            (icons / f"{number}.png").write_bytes(icon(number))
    for number in range(count):
        (applications / f"{ending}{number:05}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Application {number}\nExec=true\n"
            f"Icon={icons}/{number % ICONS}.{ending}\n"
        )


def cpu_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text().rsplit(") ", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / 100


def wake_ups(pid):
    """How often each thread has waited so far, by its number."""
    return {
        status.parent.name: int(re.search(r"\nvoluntary_ctxt_switches:\s+(\d+)", status.read_text())[1])
        for status in Path(f"/proc/{pid}/task").glob("*/status")
    }


def pss(pid):
    """In megabytes."""
    return int(re.search(r"\nPss:\s+(\d+)", Path(f"/proc/{pid}/smaps_rollup").read_text())[1]) / 1024


def pss_hidden(session, program, pid):
    session.run(program, "--hide")
    time.sleep(5)  # it frees memory after three seconds
    return pss(pid)


def one_start(program, environment):
    before = time.clock_gettime(time.CLOCK_MONOTONIC)
    process = subprocess.Popen([program], env=environment, stderr=subprocess.PIPE, text=True)
    first = None
    for line in process.stderr:
        frame = re.search(r"frame (\S+) (\w+)", line)
        if frame:
            first = first or (float(frame[1]) - before) * 1000
            if frame[2] == "complete":
                return process, first, (float(frame[1]) - before) * 1000
    raise SystemExit("the program ended before it was on the screen")


def end(process):
    process.terminate()
    process.stderr.read()
    if process.wait() != 0:
        raise SystemExit("the program did not end well")


def measure(program, count, starts):
    with X11Session(1920, 1080) as session:
        install(Path(session.environment["XDG_DATA_HOME"]), count)
        environment = dict(session.environment, QT_LOGGING_RULES="amberquill.frames=true", LANG="C.UTF-8")
        firsts, completes, memory = [], [], []
        for number in range(starts + 1):
            process, first, complete = one_start(program, environment)
            time.sleep(3)
            shown = pss(process.pid)
            cpu, switches = cpu_seconds(process.pid), wake_ups(process.pid)
            if number == starts:
                time.sleep(5)
                idle_cpu = cpu_seconds(process.pid) - cpu
                # A thread that has ended was idle.
                idle_wake_ups = sum(count - switches.get(thread, 0) for thread, count in wake_ups(process.pid).items())
                hidden = pss_hidden(session, program, process.pid)
            end(process)
            if number > 0:
                firsts.append(first)
                completes.append(complete)
                memory.append(shown)
    print(
        f"{count:6} applications: first frame {statistics.median(firsts):.0f} ms, complete "
        f"{statistics.median(completes):.0f} ms (best {min(completes):.0f}, worst {max(completes):.0f}), "
        f"PSS {statistics.median(memory):.1f} MB ({hidden:.1f} hidden), idle for 5 s: {idle_cpu:.2f} s of CPU, {idle_wake_ups} wake-ups"
    )


def measure_unkept(program, ending, starts):
    """Starts with nothing in the cache folder."""
    with X11Session(1920, 1080) as session:
        install(Path(session.environment["XDG_DATA_HOME"]), 200, ending)
        environment = dict(session.environment, QT_LOGGING_RULES="amberquill.frames=true", LANG="C.UTF-8")
        firsts, completes = [], []
        for _ in range(starts + 1):
            shutil.rmtree(Path(environment["XDG_CACHE_HOME"]) / "Amberquill", ignore_errors=True)
            process, first, complete = one_start(program, environment)
            time.sleep(1)
            end(process)
            firsts.append(first)
            completes.append(complete)
    print(
        f"   200 applications, nothing kept, {ending} files: first frame {statistics.median(firsts[1:]):.0f} ms, complete "
        f"{statistics.median(completes[1:]):.0f} ms (best {min(completes[1:]):.0f}, worst {max(completes[1:]):.0f})"
    )


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build" / "release" / "amberquill")
    starts = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    for count in (200, 10_000):
        measure(program, count, starts)
    for ending in ("png", "svg"):
        measure_unkept(program, ending, starts)


if __name__ == "__main__":
    main()
