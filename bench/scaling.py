#!/usr/bin/env python3
"""Does the cost grow with the text, or with its product with the blocks? The worst cases we know, at one size and at
four times that size: the processor's time, which other programs do not lengthen, may grow fivefold at most.

    scaling.py DATA
"""

import os
import statistics
import subprocess
import sys
from pathlib import Path

PLUVO = Path(__file__).resolve().parent.parent / "build/release/bin/pluvo"
BEGIN, END = "the Lessor", "the Lessee"
PROSE = "within the agreement of rent. Before any payment, notice was given! "
LONG = ("clause\n" * 60).strip()


def write(path, beginnings, each, last):
    with open(path, "w", encoding="ascii", newline="") as file:
        for number in range(beginnings):
            file.write(each + (PROSE + "\n" if number % 4 == 0 else PROSE))
        file.write(last + "\n")


def cases():
    one_ending = (BEGIN + " ", END)
    for unit in ("word", "sentence", "paragraph", "document"):
        apart = [] if unit == "document" else ["--apart", "3"]
        yield f"one ending at the end, {unit}", *one_ending, ["-b", BEGIN, "-e", END, "--unit", unit, *apart]
    blocks = (BEGIN + " " + PROSE + END + " ", "")
    yield "inside text missing in every block", *blocks, ["-b", BEGIN, "-e", END, "-i", "nowhere", "--unit", "document"]
    yield "every block too long", *blocks, ["-b", BEGIN, "-e", END, "--unit", "word", "--apart", "1"]
    yield ("every full text differs in its last character", LONG + "x\n", "", ["-b", LONG + "y"])


def measure(path, arguments):
    times = []
    for _ in range(7):
        process = subprocess.Popen([PLUVO, "find", "--quiet", "--match-case", *arguments, path], stdout=subprocess.DEVNULL)
        usage = os.wait4(process.pid, 0)[2]
        times.append(usage.ru_utime + usage.ru_stime)
    return statistics.median(times)


def table(folder):
    """The lines of the table, printed as they come, and whether all of it holds."""
    lines, good = [], True

    def tell(line):
        lines.append(line)
        print(line, flush=True)

    tell("| worst case, processor time | 12,500 beginnings | 50,000 | factor |")
    tell("|---|---|---|---|")
    for name, each, last, arguments in cases():
        times = []
        for beginnings in (12_500, 50_000):
            path = folder / f"scaling-{beginnings}.txt"
            write(path, beginnings, each, last)
            times.append(measure(path, arguments))
            path.unlink()
        factor = times[1] / times[0]
        good &= factor <= 5
        tell(f"| {name} | {times[0] * 1000:.1f} ms | {times[1] * 1000:.1f} ms | {factor:.2f} (must 5)"
             f"{'' if factor <= 5 else ' **missed**'} |")
    return lines, good


if __name__ == "__main__":
    sys.exit(0 if table(Path(sys.argv[1]))[1] else 1)
