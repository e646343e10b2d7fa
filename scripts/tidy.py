#!/usr/bin/env python3
"""Runs clang-tidy over the sources of src/, as many at a time as there are processors:

    scripts/tidy.py build/lint [FILES...]

A file that was found clean is not read again until something changes that the answer depends on: its text, the
headers of ours that it includes however indirectly, its compiler command, .clang-tidy or an installed package.
"""

import hashlib
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SOURCES = ROOT / "src"
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


@lru_cache(maxsize=None)
def included(path):
    """The headers of ours that a file names, whether or not the preprocessor reaches that line."""
    names = (name.decode(errors="replace") for name in INCLUDE.findall(path.read_bytes()))
    return [SOURCES / name for name in names if (SOURCES / name).is_file()]


def with_headers(path):
    """The file and everything of ours that it includes."""
    reached, waiting = set(), [path, SOURCES / "precompiled.h"]
    while waiting:
        file = waiting.pop()
        if file not in reached:
            reached.add(file)
            waiting.extend(included(file))
    return sorted(reached)


def surroundings():
    """What every answer depends on: the rules and the installed packages."""
    digest = hashlib.sha256((ROOT / ".clang-tidy").read_bytes())
    digest.update(subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True).stdout)
    digest.update(subprocess.run(["dpkg-query", "--show"], check=False, capture_output=True).stdout)
    return digest.digest()


def key(entry, common):
    digest = hashlib.sha256(common + entry["command"].encode())
    for path in with_headers(Path(entry["file"])):
        digest.update(str(path).encode() + b"\0" + path.read_bytes())
    return digest.hexdigest()


def tidy(build, entry, common):
    """Whether the file is clean, and what is to be said of it."""
    clean = build / "tidy" / (key(entry, common) + ".clean")
    if clean.exists():
        return True, ""
    result = subprocess.run(
        ["clang-tidy", "--quiet", "-p", str(build), entry["file"]], capture_output=True, text=True, check=False
    )
    if result.returncode == 0:
        clean.parent.mkdir(exist_ok=True)
        clean.touch()
        return True, ""
    return False, result.stdout + result.stderr


def main():
    build = Path(sys.argv[1]).resolve()
    asked_for = {Path(name).resolve() for name in sys.argv[2:]}
    entries = [
        entry
        for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
        if SOURCES in Path(entry["file"]).parents and (not asked_for or Path(entry["file"]) in asked_for)
    ]
    common = surroundings()
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        answers = pool.map(lambda entry: (entry, *tidy(build, entry, common)), entries)
        failed = 0
        for entry, is_clean, text in answers:
            if not is_clean:
                failed += 1
                print(f"{os.path.relpath(entry['file'], ROOT)} is not clean:\n{text}", flush=True)
    print(f"clang-tidy: {len(entries)} files, {failed} not clean")
    return 1 if failed or not entries else 0


if __name__ == "__main__":
    sys.exit(main())
