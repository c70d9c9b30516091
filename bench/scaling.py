#!/usr/bin/env python3
"""Does the cost grow with the text, or with its product with the blocks? The worst cases we know, at one size and at
four times that size. Processor time, which other programs do not lengthen, may grow fivefold at most.

    scaling.py DATA
"""

import os
import statistics
import subprocess
import sys
import zipfile
from pathlib import Path

from generate import R, W

PLUVO = Path(__file__).resolve().parent.parent / "build/release/bin/pluvo"
BEGIN, END = "the Lessor", "the Lessee"
PROSE = "within the agreement of rent. Before any payment, notice was given! "
LONG = ("clause\n" * 60).strip()


def pack(text, path):
    if path.suffix == ".txt":
        path.write_text(text, encoding="ascii", newline="")
        return
    paragraphs = "".join(f'<w:p><w:r><w:t xml:space="preserve">{line}</w:t></w:r></w:p>' for line in text.split("\n"))
    types = "http://schemas.openxmlformats.org/package/2006/content-types"
    relationships = "http://schemas.openxmlformats.org/package/2006/relationships"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as package:
        package.writestr("[Content_Types].xml", f"""<Types xmlns="{types}">
            <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
            <Override PartName="/word/document.xml" ContentType=
                "application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>""")
        package.writestr("_rels/.rels", f"""<Relationships xmlns="{relationships}">
            <Relationship Id="r" Type="{R}/officeDocument" Target="word/document.xml"/></Relationships>""")
        package.writestr("word/document.xml", f'<w:document xmlns:w="{W}"><w:body>{paragraphs}</w:body></w:document>')


class Case:
    """A document with so many beginnings, and the request for it."""

    def __init__(self, name, each, last, arguments, kind="txt"):
        self.name, self.each, self.last, self.arguments, self.kind = name, each, last, arguments, kind

    def text(self, beginnings):
        return "".join(self.each + (PROSE + "\n" if i % 4 == 0 else PROSE) for i in range(beginnings)) + self.last + "\n"

    def asked(self, beginnings):
        return self.arguments


class LongText(Case):
    """A quarter of the document is looked for: repeated text but for its end. It stands at the end, or not at all."""

    def text(self, beginnings):
        return self.each * (4 * beginnings * 20 // len(self.each)) + (self.sought(beginnings) if self.last else "")

    def sought(self, beginnings):
        return self.each * (beginnings * 20 // len(self.each)) + "!"

    def asked(self, beginnings):
        return [*self.arguments, self.sought(beginnings)]


def cases():
    one_ending = (BEGIN + " ", END)
    for unit in ("word", "sentence", "paragraph", "document"):
        apart = [] if unit == "document" else ["--apart", "3"]
        yield Case(f"one ending at the end, {unit}", *one_ending, ["-b", BEGIN, "-e", END, "--unit", unit, *apart])
    blocks = (BEGIN + " " + PROSE + END + " ", "")
    yield Case("inside text missing in every block", *blocks, ["-b", BEGIN, "-e", END, "-i", "nowhere", "--unit", "document"])
    yield Case("every block too long", *blocks, ["-b", BEGIN, "-e", END, "--unit", "word", "--apart", "1"])
    yield Case("every full text differs in its last character", LONG + "x\n", "", ["-b", LONG + "y"])
    recital, sought = "Whereas\nthe board objects ", "Whereas\nthe board agrees"
    for kind in ("txt", "docx"):
        yield Case(f"every first line matches and no rest, .{kind}", recital, "", ["-b", sought, "-e", END], kind)
        yield Case(f"first lines of endings do, .{kind}", BEGIN + " " + recital, "", ["-b", BEGIN, "-e", sought], kind)
    yield Case("line ends, one too few everywhere", "\n\n\n", "", ["-b", "\n" * 5])
    yield LongText("a quarter of the document, everywhere but for its end", "a", "", ["--begin-file"])
    yield LongText("the same with lines", "a\n", "", ["--begin-file"])
    yield LongText("every beginning too far from such an ending", "a b c. ", "yes",
                   ["-b", "c", "--unit", "word", "--apart", "1", "--end-file"])


def measure(path, arguments):
    times = []
    for _ in range(7):
        process = subprocess.Popen([PLUVO, "find", "--quiet", "--match-case", *arguments, path], stdout=subprocess.DEVNULL)
        usage = os.wait4(process.pid, 0)[2]
        times.append(usage.ru_utime + usage.ru_stime)
    return statistics.median(times)


def measured(case, beginnings, folder):
    document, sought = folder / f"scaling-{beginnings}.{case.kind}", folder / "scaling-sought"
    pack(case.text(beginnings), document)
    arguments = case.asked(beginnings)
    if arguments[-2].endswith("-file"):
        sought.write_text(arguments[-1], encoding="ascii", newline="")
        arguments = [*arguments[:-1], sought]
    time = measure(document, arguments)
    document.unlink()
    sought.unlink(missing_ok=True)
    return time


def table(folder):
    """The lines of the table, printed as they come, and whether all of it holds."""
    lines, good = [], True

    def tell(line):
        lines.append(line)
        print(line, flush=True)

    tell("| worst case, processor time | 12,500 beginnings | 50,000 | factor |")
    tell("|---|---|---|---|")
    for case in cases():
        times = [measured(case, beginnings, folder) for beginnings in (12_500, 50_000)]
        factor = times[1] / times[0]
        good &= factor <= 5
        tell(f"| {case.name} | {times[0] * 1000:.1f} ms | {times[1] * 1000:.1f} ms | {factor:.2f} (must 5)"
             f"{'' if factor <= 5 else ' **missed**'} |")
    return lines, good


if __name__ == "__main__":
    sys.exit(0 if table(Path(sys.argv[1]))[1] else 1)
