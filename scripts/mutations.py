#!/usr/bin/env python3
"""Implements scripts/mutate.sh; see there for its use."""

import hashlib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LIST = Path("tests/mutations.txt")
JOBS = os.environ.get("MUTATE_JOBS") or str(len(os.sched_getaffinity(0)))
LONGEST_TEST = 300  # seconds: a test that hangs has noticed the mistake
DESKTOP = "desktop"  # instead of a test executable: cases of tests/desktop


class ListError(Exception):
    """A mistake in the list itself."""


@dataclass(frozen=True)
class Mutation:
    """One small mistake."""

    line: int  # of the list
    file: str
    title: str
    old: str
    new: str
    test: str
    cases: str

    def __str__(self):
        return f"{self.file}: {self.title}"

    def error(self, folder):
        """The reason why the mistake cannot be made in the project, or None."""
        path = folder / self.file
        found = path.read_text(encoding="utf-8").count(self.old) if path.is_file() else 0
        return f"{LIST}:{self.line}: error: `{self.old}` stands {found} times in {self.file}" if found != 1 else None

    def key(self):
        """The key of its stored result."""
        digest = hashlib.sha256(repr((self.old, self.new)).encode())
        digest.update((ROOT / self.file).read_bytes())
        return digest.hexdigest()


def read_list(path):
    mutations, file, block = [], None, []
    lines = path.read_text(encoding="utf-8").splitlines() + [""]
    for number, line in enumerate(lines, 1):
        heading = re.fullmatch(r"\[(.+)\]", line)
        if line.startswith("#"):
            continue
        if heading:
            file = heading[1]
        elif line:
            block.append(line)
        elif block:
            if [part[:2].strip() for part in block[1:]] != ["-", "+", "?"]:
                raise ListError(f"{LIST}:{number - len(block)}: error: not a title and lines with -, + and ?")
            test, _, cases = block[3][2:].partition(" ")
            if not file or block[1][2:] == block[2][2:] or not test:
                raise ListError(f"{LIST}:{number - len(block)}: error: incomplete")
            mutations.append(Mutation(number - len(block), file, block[0], block[1][2:], block[2][2:], test, cases or "*"))
            block = []
    return mutations


def copy_project(target):
    """Makes `target` a copy of the project's files, without those that git ignores. Equal files are not touched."""
    names = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=ROOT, check=True, capture_output=True, text=True,
    ).stdout.split("\0")
    wanted = {name for name in names if name and (ROOT / name).is_file()}
    for path in list(target.rglob("*")):
        name = path.relative_to(target)
        if name.parts[0] != "build" and path.is_file() and name.as_posix() not in wanted:
            path.unlink()
    for name in wanted:
        source, copy = ROOT / name, target / name
        if not copy.is_file() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, copy)
            shutil.copymode(source, copy)


class Workshop:
    """The copy and its build."""

    def __init__(self, folder):
        self.tree = folder / "tree"
        self.build = self.tree / "build/release"
        self.log = folder / "log.txt"
        self.environment = dict(os.environ)

    def run(self, command, folder=None, timeout=None):
        """Whether the command succeeds, and its output."""
        with self.log.open("a", encoding="utf-8") as log:
            log.write(f"\n$ {' '.join(map(str, command))}\n")
            try:
                result = subprocess.run(
                    command, cwd=folder or self.build, env=self.environment, timeout=timeout,
                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                )
                said, succeeded = result.stdout.decode(errors="replace"), result.returncode == 0
            except subprocess.TimeoutExpired:
                said, succeeded = "timeout", False
            log.write(said)
        return succeeded, said

    def prepare(self):
        self.tree.mkdir(parents=True, exist_ok=True)
        copy_project(self.tree)
        # Without optimisation, the saved compile time is longer than the added test time.
        command = ["cmake", "--preset", "release", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0"]
        if not self.run(command, self.tree)[0]:
            sys.exit(f"cannot be configured: see {self.log}")

    def compiles(self, targets):
        return self.run(["cmake", "--build", "--preset", "release", "-j", JOBS, "--target", *targets], self.tree)[0]

    def targets(self, test):
        return ["amberquill", "tests"] if test == DESKTOP else [test]

    def passes(self, test, cases):
        """Whether the cases pass. Cases that do not exist do not pass."""
        if test == DESKTOP:
            self.environment["AMBERQUILL_BUILD"] = str(self.build)
            command = ["python3", "-B", "-m", "unittest", *cases.split()]
            return self.run(command, self.tree / "tests/desktop", LONGEST_TEST)[0]
        command = [self.build / "tests" / test, f"--gtest_filter={cases}", "--gtest_brief=1", "--gtest_fail_fast"]
        succeeded, said = self.run(command, timeout=LONGEST_TEST)
        return succeeded and re.search(r"\[==========\] [1-9]\d* tests? from", said) is not None

    def others_pass(self, file):
        """Whether all tests pass that may notice a mistake in the file and need no desktop."""
        if not self.compiles(["tests"]):
            return False
        is_desktops = file.startswith("src/platform/linux/")
        # At one device pixel a point: at two, the same cases run once more.
        chosen = ["-R", "^unit_linux"] if is_desktops else ["-R", "^(unit_|view_tests)", "-E", "^unit_linux|@2"]
        return self.run(["ctest", "-j", JOBS, *chosen, "--timeout", str(LONGEST_TEST)])[0]

    def try_mutation(self, mutation, is_quick):
        """"noticed", "survived" or "does not compile"."""
        path = self.tree / mutation.file
        original = path.read_text(encoding="utf-8")
        path.write_text(original.replace(mutation.old, mutation.new), encoding="utf-8")
        try:
            if not self.compiles(self.targets(mutation.test)):
                return "does not compile"
            if not self.passes(mutation.test, mutation.cases):
                return "noticed"
            return "survived" if is_quick or self.others_pass(mutation.file) else "noticed by other tests"
        finally:
            path.write_text(original, encoding="utf-8")


def run(mutations, is_quick):
    folder = ROOT / "build/mutants"
    folder.mkdir(parents=True, exist_ok=True)
    noticed_path = folder / "noticed.json"
    noticed = json.loads(noticed_path.read_text(encoding="utf-8")) if noticed_path.exists() else {}
    keys = {mutation: mutation.key() for mutation in mutations}
    todo = [mutation for mutation in mutations if keys[mutation] not in noticed]
    workshop = Workshop(folder)
    with tempfile.TemporaryDirectory() as runtime:
        workshop.environment["XDG_RUNTIME_DIR"] = runtime
        if todo:
            print(f"building; {workshop.log} tells more", flush=True)
            workshop.prepare()
            if not workshop.compiles(sorted({target for each in todo for target in workshop.targets(each.test)})):
                sys.exit(f"does not compile as it is: see {workshop.log}")
        for test, cases in sorted({(each.test, each.cases) for each in todo}):
            if not workshop.passes(test, cases):
                sys.exit(f"fails without any mistake, or has no cases: {test} {cases}")
        survivors, broken = [], []
        for number, mutation in enumerate(todo, 1):
            answer = workshop.try_mutation(mutation, is_quick)
            print(f"{number}/{len(todo)} {answer}: {mutation}", flush=True)
            if answer.startswith("noticed"):
                noticed[keys[mutation]] = str(mutation)
                noticed_path.write_text(json.dumps(noticed, indent=1), encoding="utf-8")
            else:
                (survivors if answer == "survived" else broken).append(mutation)
    for mutation in survivors:
        print(f"survivor: {LIST}:{mutation.line}: {mutation}\n  - {mutation.old}\n  + {mutation.new}")
    for mutation in broken:
        print(f"{LIST}:{mutation.line}: error: does not compile: {mutation}")
    print(f"{len(mutations)} mutations, {len(survivors)} survivors")
    return 1 if broken else 0


def main():
    try:
        mutations = read_list(ROOT / LIST)
    except ListError as error:
        sys.exit(str(error))
    if errors := [error for each in mutations if (error := each.error(ROOT))]:
        sys.exit("\n".join(errors))
    words = sys.argv[1:]
    if words == ["--check"]:
        print(f"{len(mutations)} mutations")
        return 0
    is_quick = "--quick" in words
    words = [word for word in words if word != "--quick"]
    return run([each for each in mutations if not words or any(word in each.file for word in words)], is_quick)


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit("interrupted; the next run goes on from here")
