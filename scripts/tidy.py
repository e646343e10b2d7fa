#!/usr/bin/env python3
"""Runs clang-tidy over the sources and the tests, as many processes at a time as there are processors:

    scripts/tidy.py build/lint [FILES...]

Most of a file's time goes into headers that it shares with its neighbours. So files with the same compiler arguments,
those of a library or of a test executable, are read as one. Files given by name are read one by one.

Clean results are stored beside ccache's folder. The key is the preprocessed text with its comments, the compiler's
arguments, the checks and clang-tidy's version. The project's path does not matter.
"""

import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
KEPT_DAYS = 30
MOST_NAMED = 25  # lines of the summary
FINDING = re.compile(r"^(/.*?):(\d+):\d+: (?:error|warning): .*\[([\w.,-]+)\]$", re.MULTILINE)


@dataclass(frozen=True)
class Kind:
    """Sources with checks of their own."""

    folder: Path
    settings: Path
    reported: str  # files whose findings count: the sources themselves and the headers beside them


KINDS = (
    Kind(ROOT / "src", ROOT / ".clang-tidy", f"^{ROOT}/src/.*"),
    Kind(ROOT / "tests", ROOT / "tests/.clang-tidy", f"^{ROOT}/tests/.*"),
)


@dataclass
class Unit:
    """The files of one clang-tidy process."""

    name: str
    kind: Kind
    files: list
    arguments: list  # the compiler's
    folder: Path  # where it is run


def kind_of(path):
    return next((kind for kind in KINDS if kind.folder in path.parents), None)


def arguments_of(entry):
    """The compiler's arguments without the compiler, the source file and the output."""
    words = shlex.split(entry["command"])
    while words and words[0].startswith("-") is False:
        words.pop(0)
    arguments, skip = [], False
    for word in words:
        if skip:
            skip = False
        elif word in ("-o", "-c", "-MF", "-MT", "-MQ"):
            skip = True
        elif word not in ("-MD", entry["file"]):
            arguments.append(word)
    return arguments


def units(build, entries, are_single):
    """The files, grouped by equal compiler arguments."""
    groups = {}
    for entry in entries:
        path = Path(entry["file"])
        arguments = arguments_of(entry)
        target = re.search(r"-o (\S+?)\.dir/", entry["command"])[1]
        key = (path if are_single else target, tuple(arguments))
        groups.setdefault(key, Unit(Path(key[0]).name, kind_of(path), [], arguments, Path(entry["directory"])))
        groups[key].files.append(path)
    folder = build / "tidy"
    folder.mkdir(exist_ok=True)
    return sorted(groups.values(), key=lambda unit: -sum(path.stat().st_size for path in unit.files))


def write_if_changed(path, text):
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.write_text(text, encoding="utf-8")


def main_file(build, unit):
    """The file that stands for the unit."""
    if len(unit.files) == 1:
        return unit.files[0]
    lines = [f'#include "{path}" // NOLINT(bugprone-suspicious-include)\n' for path in unit.files]
    names = "\n".join(os.path.relpath(path, ROOT) for path in unit.files)
    digest = hashlib.sha256(names.encode()).hexdigest()[:8]
    path = build / "tidy" / f"{unit.name}-{digest}.cpp"
    write_if_changed(path, "".join(lines))
    return path


def relative(text, build):
    """The text without the project's path."""
    return text.replace(os.fsencode(build), b"<build>").replace(os.fsencode(ROOT), b"<root>")


def key(build, unit, path, version):
    """The key of the stored result. None: the unit cannot be preprocessed."""
    # Comments are kept because they can switch checks off.
    text = subprocess.run(
        ["clang++", *unit.arguments, "-E", "-CC", str(path)], cwd=unit.folder, capture_output=True, check=False
    )
    if text.returncode != 0:
        return None
    digest = hashlib.sha256(version + unit.kind.settings.read_bytes())
    digest.update(relative("\0".join(unit.arguments).encode(), build))
    digest.update(relative(text.stdout, build))
    return digest.hexdigest()


def tidy(build, unit, cache, version):
    """Whether the unit is clean, and the output to show."""
    path = main_file(build, unit)
    found = key(build, unit, path, version)
    clean = cache / found if found else None
    if clean and clean.exists():
        clean.touch()
        return True, ""
    result = subprocess.run(
        [
            "clang-tidy",
            "--quiet",
            f"--config-file={unit.kind.settings}",
            f"--header-filter={unit.kind.reported}",
            str(path),
            "--",
            *unit.arguments,
        ],
        cwd=unit.folder,
        capture_output=True,
        text=True,
        check=False,
    )
    if result.returncode == 0 and clean:
        clean.touch()
    return result.returncode == 0, result.stdout + result.stderr


def cache_folder():
    """The folder of the stored results, beside ccache's. Removes old results."""
    ccache = subprocess.run(["ccache", "--get-config", "cache_dir"], check=True, capture_output=True, text=True)
    folder = Path(ccache.stdout.strip()).parent / "amberquill-tidy"
    folder.mkdir(parents=True, exist_ok=True)
    oldest = time.time() - KEPT_DAYS * 24 * 3600
    for path in folder.iterdir():
        if path.stat().st_mtime < oldest:
            path.unlink(missing_ok=True)
    return folder


def main():
    build = Path(sys.argv[1]).resolve()
    asked_for = {Path(name).resolve() for name in sys.argv[2:]}
    entries = [
        entry
        for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
        if kind_of(Path(entry["file"]))
        and build not in Path(entry["file"]).parents
        and (not asked_for or Path(entry["file"]) in asked_for)
    ]
    cache = cache_folder()
    version = subprocess.run(["clang-tidy", "--version"], check=True, capture_output=True).stdout
    failed, findings = 0, []
    with ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        waiting = units(build, entries, bool(asked_for))
        for unit, (is_clean, text) in zip(waiting, pool.map(lambda unit: tidy(build, unit, cache, version), waiting)):
            if not is_clean:
                failed += 1
                print(f"{unit.name} is not clean:\n{text}", flush=True)
                findings += [
                    f"{os.path.relpath(file, ROOT)}:{line} {check}" for file, line, check in FINDING.findall(text)
                ] or [unit.name]
    for finding in list(dict.fromkeys(findings))[:MOST_NAMED]:
        print(f"clang-tidy: {finding}")
    print(f"clang-tidy: {len(entries)} files in {len(waiting)} units, {failed} not clean")
    return 1 if failed or not entries else 0


if __name__ == "__main__":
    sys.exit(main())
