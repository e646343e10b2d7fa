#!/usr/bin/env python3
"""Checks the floors of src/: reports each include that its library may not use, and fails if there is one.

    scripts/floors.py [PROJECT]

The order of the libraries is that of the add_subdirectory lines, bottom to top. A file may include files of its own
library and of libraries that it links. A library links only libraries below it. Files do not include each other in a
cycle, and each belongs to a library. Outside platform/linux/, only shell/main.cpp includes a file of platform/linux/.
"""

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

FUNCTION = re.compile(r"^[ \t]*(\w+)\s*\(([^()]*)\)", re.MULTILINE)
COMMENT = re.compile(r"#[^\n]*")
INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]')
KEYWORDS = {"SOURCES", "PUBLIC", "PRIVATE", "INTERFACE", "GENERATES_CODE"}
OF_NO_LIBRARY = {"precompiled.h"}  # every library is compiled with it
ANSWERS = "platform/linux/"
NAMES_ANSWERS = "shell/main.cpp"


@dataclass
class Library:
    """A library or a program, with the libraries that it links."""

    name: str
    place: str  # file and line
    position: int
    files: list = field(default_factory=list)
    public: list = field(default_factory=list)
    private: list = field(default_factory=list)


def words_by_keyword(text):
    """The arguments of a CMake function, by the keyword before them."""
    found, keyword = {}, "SOURCES"
    for word in text.split():
        if word in KEYWORDS:
            keyword = word
        else:
            found.setdefault(keyword, []).append(word)
    return found


class Project:
    """The libraries and links in the CMakeLists.txt files and the includes of src/."""

    def __init__(self, folder):
        self.folder = folder
        self.source = folder / "src"
        self.libraries = {}
        self.faults = []
        self.read_lists(self.source)
        self.owners = {file: library for library in self.libraries.values() for file in library.files}
        self.files = sorted(
            path.relative_to(self.source).as_posix()
            for path in self.source.rglob("*")
            if path.suffix in (".h", ".cpp")
        )
        self.includes = {file: list(self.includes_of(file)) for file in self.files}

    def read_lists(self, folder):
        path = folder / "CMakeLists.txt"
        text = COMMENT.sub("", path.read_text(encoding="utf-8"))
        for call in FUNCTION.finditer(text):
            name, arguments = call[1], call[2].split()
            if name == "add_subdirectory":
                self.read_lists(folder / arguments[0])
            elif name in ("amberquill_floor", "add_executable"):
                target = ("amberquill_" if name == "amberquill_floor" else "") + arguments[0]
                line = text.count("\n", 0, call.start(1)) + 1
                place = f"{path.relative_to(self.folder)}:{line}"
                library = Library(target, place, len(self.libraries))
                self.libraries[target] = library
                self.add(library, folder, words_by_keyword(" ".join(arguments[1:])))
            elif name == "target_link_libraries" and arguments[0] in self.libraries:
                self.add(self.libraries[arguments[0]], folder, words_by_keyword(" ".join(arguments[1:])))

    def add(self, library, folder, words):
        prefix = folder.relative_to(self.source)
        library.files += [(prefix / file).as_posix() for file in words.get("SOURCES", [])]
        library.public += words.get("PUBLIC", [])
        library.private += words.get("PRIVATE", [])

    def includes_of(self, file):
        """Line number and file of each include that names a file of src/."""
        lines = (self.source / file).read_text(encoding="utf-8").splitlines()
        for number, line in enumerate(lines, 1):
            found = INCLUDE.match(line)
            if found:
                for folder in (self.source, (self.source / file).parent):
                    if (folder / found[1]).is_file():
                        yield number, (folder / found[1]).resolve().relative_to(self.source.resolve()).as_posix()
                        break

    def linked(self, library):
        """The libraries of src/ that this library's files may use, itself included."""
        found, waiting = {library.name}, library.public + library.private
        while waiting:
            name = waiting.pop()
            if name in self.libraries and name not in found:
                found.add(name)
                waiting += self.libraries[name].public
        return found

    def fault(self, place, text):
        self.faults.append(f"{place}: error: {text}")

    def check_links(self):
        for library in self.libraries.values():
            for name in library.public + library.private:
                other = self.libraries.get(name)
                if other and other.position >= library.position:
                    self.fault(library.place, f"{library.name} links {name}, which is above it")

    def check_owners(self):
        for file in self.files:
            if file not in self.owners and file not in OF_NO_LIBRARY:
                self.fault(f"src/{file}:1", "no CMakeLists.txt lists this file")

    def check_includes(self):
        linked = {library.name: self.linked(library) for library in self.libraries.values()}
        for file in self.files:
            for line, included in self.includes[file]:
                user, used = self.owners.get(file), self.owners.get(included)
                place = f"src/{file}:{line}"
                if included.startswith(ANSWERS) and not file.startswith(ANSWERS) and file != NAMES_ANSWERS:
                    self.fault(place, f'"{included}": outside {ANSWERS} only {NAMES_ANSWERS} may include it')
                elif user and used and used.position > user.position:
                    self.fault(place, f'"{included}" points up: {used.name} is above {user.name}')
                elif user and used and used.name not in linked[user.name]:
                    self.fault(place, f'"{included}": {user.name} does not link {used.name}')

    def check_cycles(self):
        done, path = set(), []

        def visit(file):
            path.append(file)
            for line, included in self.includes[file]:
                if included in path:
                    cycle = path[path.index(included) :] + [included]
                    self.fault(f"src/{file}:{line}", "includes in a cycle: " + " > ".join(cycle))
                elif included not in done and included in self.includes:
                    visit(included)
            path.pop()
            done.add(file)

        for file in self.files:
            if file not in done:
                visit(file)


def main():
    root = Path(__file__).resolve().parent.parent
    project = Project(Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else root)
    project.check_links()
    project.check_owners()
    project.check_includes()
    project.check_cycles()
    for fault in project.faults:
        print(fault)
    print(f"{len(project.files)} files in {len(project.libraries)} libraries, {len(project.faults)} faults")
    return 1 if project.faults else 0


if __name__ == "__main__":
    sys.exit(main())
