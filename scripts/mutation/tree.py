"""The copy of the source tree that is changed and built: what cannot be compiled is taken back until all can."""

import hashlib
import json
import os
import re
import shlex
import subprocess
from pathlib import Path

from .sites import Finder

HERE = Path(__file__).parent
ROUNDS = 40


class Tree:
    """One for each checkout. Its files are those of the checkout, but for the sources of one room."""

    def __init__(self, root):
        self.root = root
        cache = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache")
        self.folder = cache / "pluvo-mutants" / hashlib.sha256(str(root).encode()).hexdigest()[:8]
        if self.folder.resolve().is_relative_to("/tmp"):
            raise SystemExit(f"mutants: tests have a /tmp of their own and would not see {self.folder}; set XDG_CACHE_HOME")
        self.sources = self.folder / "tree"
        self.build = self.folder / "build"
        self.sources.mkdir(parents=True, exist_ok=True)

    def room(self, name):
        """The folder of a room, and those of rooms within it."""
        folders = {}
        for file in (self.root / "src").rglob("CMakeLists.txt"):
            for found in re.findall(r"pluvo_room\((\w+)", file.read_text()):
                folders[found] = file.parent
        if name not in folders:
            raise SystemExit(f"mutants: there is no room '{name}'; the rooms are {', '.join(sorted(folders))}")
        folder = folders[name]
        return folder, [other for other in folders.values() if other != folder and folder in other.parents]

    def programs(self, room):
        """What a room's tests are run with: a program of tests, or else the programs that scripts named after it run."""
        if any(re.search(rf"pluvo_tests\({room}\b", file.read_text())
               for file in (self.root / "tests").rglob("CMakeLists.txt")):
            return [f"{room}_tests"]
        words = {Path(word) for test in tests_in(self.build) if test["name"].startswith(f"{room}_")
                 for word in test.get("command", [])}
        return sorted(word.name for word in words if word.parent == self.build / "bin")

    def copy(self, changed, room=None):
        """The checkout as it is, with the sources of a room that are changed, which are compiled without warnings."""
        names = subprocess.run(["git", "-C", self.root, "ls-files", "-coz", "--exclude-standard"], check=True,
                               capture_output=True, text=True).stdout.split("\0")
        wanted = {}
        for name in filter(None, names):
            path = self.root / name
            if path.is_file() and not path.is_symlink():
                wanted[name] = changed[name] if name in changed else path.read_bytes()
        if room and changed:
            name = str((room / "CMakeLists.txt").relative_to(self.root))
            files = " ".join(str((self.root / source).relative_to(room)) for source in sorted(changed))
            quiet = f'set_source_files_properties({files} PROPERTIES COMPILE_OPTIONS "-w;-Wno-narrowing;-fpermissive")\n'
            wanted[name] = quiet.encode() + wanted[name]
        for path in self.sources.rglob("*"):
            if path.is_file() and str(path.relative_to(self.sources)) not in wanted:
                path.unlink()
        for name, content in wanted.items():
            path = self.sources / name
            if not path.is_file() or path.read_bytes() != content:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content)
                path.chmod((self.root / name).stat().st_mode)

    def configure(self):
        run(["cmake", "--preset", "debug", "-S", self.sources, "-B", self.build, "-DPLUVO_TESTS=ON"], self.sources,
            self.folder / "configure.log")

    def find(self, folder, others):
        """The edits of a room's sources, read from the checkout, by the commands the copy is built with."""
        finder = Finder(self.root, folder)
        for command in json.loads((self.build / "compile_commands.json").read_text()):
            path = self.root / Path(command["file"]).resolve().relative_to(self.sources.resolve()) \
                if Path(command["file"]).resolve().is_relative_to(self.sources.resolve()) else None
            if not path or folder not in path.parents or any(other in path.parents for other in others):
                continue
            arguments = shlex.split(command["command"].replace(f"{self.sources}/", f"{self.root}/"))
            start = next(i for i, word in enumerate(arguments) if re.search(r"\+\+[^/]*$", word)) + 1
            kept = [a for a in arguments[start:] if not re.match(r"-(c|o|W.*|fcf-.*|fstack-.*|D_FORTIFY.*)$|.*\.(cpp|o)$", a)]
            finder.read(path, ["-xc++", "-w", *self.unpacked(kept)], others)
        # Tables of data that a tool writes are no code.
        finder.sources = {name: source for name, source in finder.sources.items()
                          if not source.bytes.startswith(b"// Written by ")}
        edits = []
        number = 1
        for name in sorted(finder.sources):
            for edit in finder.sources[name].edits:
                for mutant in edit.mutants:
                    mutant.number = number
                    number += 1
                edits.append(edit)
        return [finder.sources[name] for name in sorted(finder.sources)], number

    def unpacked(self, arguments):
        """The compiler's arguments with headers as text, where g++ has precompiled them: clang cannot read that."""
        given = list(arguments)
        if "-include" in given:
            at = given.index("-include") + 1
            header = self.folder / "headers.h"
            header.write_text(f'#include "{given[at]}"\n')
            given[at] = str(header)
        return given

    def make(self, sources, targets, folder, wanted):
        """Builds the targets with the edits of the mutants wanted that can be compiled; gives back those edits."""
        kept = needed(sources, wanted)
        for turn in range(ROUNDS):
            places = {}
            changed = {}
            for source in sources:
                if kept[source.name]:
                    changed[source.name], places[source.name] = source.rendered(kept[source.name], HERE / "switch.h")
            self.copy(changed, folder)
            if turn == 0:
                self.configure()
            # Later rounds stop nowhere, so that each finds as many faults as there are.
            done = subprocess.run(["nice", "-n", "5", "cmake", "--build", self.build, "-j", "2", "--target", *targets,
                                   "--", "-k", "0"], capture_output=True, text=True, env=dict(os.environ, LC_ALL="C"))
            (self.folder / "build.log").write_text(done.stdout + done.stderr)
            if done.returncode == 0:
                return kept
            self.take_back(done.stdout, sources, kept, places, changed)
        raise SystemExit(f"mutants: still not compiled after {ROUNDS} rounds; see {self.folder / 'build.log'}")

    def take_back(self, output, sources, kept, places, changed):
        """Drops the edits that the compiler's messages point at."""
        dropped = set()
        aimless = []
        for lines in messages(output):
            edit = self.culprit(lines, kept, places, changed)
            if edit:
                dropped.add(edit)
            else:
                aimless.append(lines)
        if not dropped:
            # The message is about somewhere else: first constants go back, then the sources it names, then all.
            constants = {e for edits in kept.values() for e in edits if e.names}
            named = {e for name, edits in kept.items() for e in edits if any(name in line for m in aimless for line in m)}
            headers = {e for source in sources if source.header for e in kept[source.name]}
            dropped = constants or named or headers or {e for edits in kept.values() for e in edits}
            if not dropped:
                raise SystemExit("mutants: does not build unchanged either:\n" + "\n".join(output.splitlines()[-30:]))
        for source in sources:
            # The compiler tells of the first fault only in what it computes itself: that is left alone altogether.
            kept[source.name] = [edit for edit in kept[source.name] if edit not in dropped]
            spans = [e.span for e in source.edits if e.names and e not in kept[source.name]]
            hit = [span for span in spans if any(span[0] <= e.start < span[1] for e in source.edits if e in dropped)]
            kept[source.name] = [edit for edit in kept[source.name]
                                 if not any(a <= edit.start < b for a, b in hit)]

    def culprit(self, lines, kept, places, changed):
        constants = {name: edit for edits in kept.values() for edit in edits for name in edit.names}
        for line in lines:
            found = re.match(r"(.+?):(\d+):(\d+): ", line)
            if found and (name := self.name(found[1])) in places:
                begins = changed[name].split(b"\n")
                offset = sum(len(part) + 1 for part in begins[:int(found[2]) - 1]) + int(found[3]) - 1
                around = [(b - a, number, edit) for number, (a, b, edit) in enumerate(places[name]) if a <= offset < b]
                if around:
                    return min(around)[2]
        for line in lines:
            for word in re.findall(r"['‘][^'’]*?(\w+)(?:<[^'’]*>)?['’]", line):
                if word in constants:
                    return constants[word]
        return None

    def name(self, path):
        path = Path(path) if Path(path).is_absolute() else self.build / path
        path = path.resolve()
        return str(path.relative_to(self.sources.resolve())) if path.is_relative_to(self.sources.resolve()) else None


def tests_in(build):
    """As ctest tells them."""
    told = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], check=True, capture_output=True)
    return json.loads(told.stdout)["tests"]


def needed(sources, wanted):
    """The edits that hold mutants wanted. With the first one in a constant all that take constants back."""
    held = {source.name: [edit for edit in source.edits if any(mutant.number in wanted for mutant in edit.mutants)]
            for source in sources}
    spans = {source.name: [edit.span for edit in source.edits if edit.names] for source in sources}
    if any(a <= edit.start < b for name, edits in held.items() for edit in edits for a, b in spans[name]):
        for source in sources:
            held[source.name] = [edit for edit in source.edits if edit.names or edit in held[source.name]]
    return held


def messages(output):
    """Each of the compiler's errors: its own line first, then the places it was reached from, then its notes."""
    above, made = [], []
    for line in output.splitlines():
        if re.match(r".+:\d+:\d+: (fatal )?error: ", line):
            made.append([line, *above])
            above = []
        elif re.match(r".+:\d+:\d+:\s+(required|in 'constexpr'|recursively)", line):
            above.append(line)
        elif re.match(r".+:\d+:\d+: note: ", line) and made:
            made[-1].append(line)
        elif "undefined reference" in line or "multiple definition" in line:
            made.append([line])
    return made


def run(command, folder, log):
    with open(log, "w") as out:
        if subprocess.run(command, cwd=folder, stdout=out, stderr=subprocess.STDOUT).returncode:
            raise SystemExit(f"mutants: failed: {' '.join(map(str, command))} (see {log})")
