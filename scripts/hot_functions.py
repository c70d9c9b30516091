#!/usr/bin/env python3
"""Which functions a run on a small document calls: the linker puts them together (cmake/PluvoHotFunctions.cmake).

    : > cmake/hot_functions.txt && cmake --build build/release --target pluvo
    scripts/hot_functions.py build/release/bin/pluvo DOCUMENT... > cmake/hot_functions.txt

Needs valgrind, which does not tell functions apart that the linker has put together, and a program that was not
stripped. A list that is out of date costs speed and nothing else.
"""

import bisect
import itertools
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

BLOCK = ["--begin", "the Lessor", "--end", "the Lessee"]
REQUESTS = [["find"], ["highlight"], ["replace", "--text", "the parties"], ["insert", "--text", "both "], ["delete"]]


def symbols_of(program):
    """Start, end and name of each function; several may begin at one place."""
    listed = subprocess.run(["nm", "-n", "-S", program], capture_output=True, text=True, check=True).stdout
    words = [line.split() for line in listed.splitlines()]
    return [(int(w[0], 16), int(w[0], 16) + int(w[1], 16), w[3]) for w in words if len(w) == 4 and w[2] in "tTwWi"]


def addresses_in(profile, program):
    """The instructions of the program that ran. A profile gives addresses as differences, and names once."""
    names, here, address = {}, "", 0
    for line in profile.read_text().splitlines():
        if object_ := re.match(r"c?ob=\((\d+)\)(?: (.*))?", line):
            names.setdefault(object_[1], object_[2])
            if not line.startswith("c"):
                here = names[object_[1]]
        elif line[:1] in ("0", "+", "-", "*"):
            word = line.split()[0]
            address = int(word, 0) if word[0] == "0" else address + (int(word, 0) if word != "*" else 0)
            if here == program:
                yield address


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    program, *documents = (str(pathlib.Path(path).resolve()) for path in sys.argv[1:])
    sections = subprocess.run(["readelf", "-SW", program], capture_output=True, text=True, check=True).stdout
    if ".text.together" in sections:
        sys.exit(f"{program} was linked with a list of functions; empty cmake/hot_functions.txt, and build it again.")
    symbols = symbols_of(program)
    starts = [start for start, _, _ in symbols]
    runs = {}  # of a function that was called: the numbers of the runs
    with tempfile.TemporaryDirectory() as folder:
        profile = pathlib.Path(folder) / "profile"
        state = {**os.environ, "XDG_STATE_HOME": folder}
        for number, (document, request) in enumerate(itertools.product(documents, REQUESTS)):
            copy = shutil.copy(document, folder)
            words = [request[0], *BLOCK, *request[1:], copy]
            subprocess.run(["valgrind", "--tool=callgrind", "--dump-instr=yes", f"--callgrind-out-file={profile}",
                            program, *words], env=state, capture_output=True, check=False)  # texts have no highlights
            addresses = {address: bisect.bisect(starts, address) - 1 for address in addresses_in(profile, program)}
            for start in {starts[at] for address, at in addresses.items() if at >= 0 and address < symbols[at][1]}:
                runs.setdefault(start, []).append(number)
    # What the compiler took for unlikely stays with its like. What most runs call comes first, and what the same runs
    # call lies together.
    called = {(-len(runs[start]), tuple(runs[start]), name) for start, _, name in symbols if start in runs}
    print("\n".join(name for *_, name in sorted(called) if not name.endswith(".cold")))


main()
