#!/usr/bin/env python3
"""Whole-process benchmarks: PLUVO beside the limit program and its peers, in alternation, as medians and ratios.

    run.py [--repeat N] [--only WORD] [--write] DATA

DATA is the folder generate.py filled. --write puts the table into docs/benchmarks.md.
"""

import argparse
import multiprocessing
import os
import platform
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check  # noqa: E402 (beside this file)

BENCH = Path(__file__).resolve().parent
ROOT = BENCH.parent
PLUVO = ROOT / "build/release/bin/pluvo"
LIMIT = ROOT / "build/bench/bin/limit"
BEGIN, END, TEXT = "the Lessor", "the Lessee", "the parties"
BLOCK = ["--begin", BEGIN, "--end", END]


@dataclass
class Job:
    """One command, run in a scratch copy of its input."""
    name: str
    command: list  # "{in}" and "{out}" stand for the paths
    once: bool = False  # too slow to be run as often as the others
    times: list = field(default_factory=list)
    memory: list = field(default_factory=list)

    over_result: bool = False  # runs over the bytes PLUVO wrote, not over those it read
    other: str = ""  # runs over this document instead of the case's

    def run(self, source, scratch, keep_input):
        if self.other:
            source = source.parent / self.other
        if self.over_result:
            source = scratch / "result" / source.name
        # A copy of a folder is used once and goes with the case: a disk without a journal of its own looks long
        # for the numbers of new files where many files went a moment ago.
        copies = f"copy{len(list(scratch.iterdir()))}" if source.is_dir() and not keep_input else ""
        inside = scratch / copies / source.name
        if not (keep_input and inside.exists()):
            if inside.is_dir():
                shutil.rmtree(inside)
            shutil.copytree(source, inside) if source.is_dir() else shutil.copyfile(source, inside)
            os.sync()
        files = sorted(str(p) for p in inside.iterdir()) if source.is_dir() else [str(inside)]
        command = []
        for word in self.command:
            command += files if word == "{files}" else [word.replace("{in}", str(inside)).replace("{out}", str(scratch / "out"))]
        start = time.perf_counter()
        # What PLUVO keeps for its undo goes beside the data, not among the user's own.
        surroundings = {**os.environ, "XDG_STATE_HOME": str(scratch / "state")}
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=surroundings)
        errors = process.stderr.read()
        _, status, usage = os.wait4(process.pid, 0)
        self.times.append(time.perf_counter() - start)
        self.memory.append(usage.ru_maxrss / 1024)
        if os.waitstatus_to_exitcode(status) not in (0, 1):
            sys.exit(f"{self.name} failed: {errors.decode(errors='replace')[-500:]}")
        return inside

    @property
    def median(self):
        return statistics.median(self.times)

    @property
    def spread(self):
        ordered = sorted(self.times)
        return (ordered[-1 - len(ordered) // 10] - ordered[len(ordered) // 10]) / self.median


@dataclass
class Case:
    name: str
    source: str
    jobs: list
    must: dict  # peer name -> (factor, at most or at least)
    changes: bool = True
    right: object = None  # checks the result
    memory: float = 0  # MB at most
    repeat: int = 0


def pluvo(*words):
    return Job("pluvo", [str(PLUVO), *words])


def beside(name, document, *words):
    """PLUVO in another case, measured in the same run."""
    return Job(f"pluvo, {name}", [str(PLUVO), *words], other=document)


def lxml(operation, *text):
    return Job("lxml", ["/usr/bin/python3", str(BENCH / "peers/with_lxml.py"), operation, BEGIN, END, *text, "{in}"])


def python_docx(operation):
    return Job("python-docx", ["/usr/bin/python3", str(BENCH / "peers/with_python_docx.py"), operation, BEGIN, END, "{in}"])


def libreoffice(operation, files):
    return Job("LibreOffice", ["/usr/bin/python3", str(BENCH / "peers/with_libreoffice.py"), operation, BEGIN, END, files],
               once=True)


def limit(*words, over_result=False):
    return Job("limit", [str(LIMIT), *words], over_result=over_result)


def changed(operation, text=""):
    return lambda original, result: check.check(original, result, operation, BEGIN, END, text)


def docx_cases():
    edit = {"highlight": (["highlight"], []), "replace": (["replace", "--text", TEXT], [TEXT])}
    for name, factor, quicker, memory in (("sparse", 2.8, 4, 60), ("dense", 3.5, 8, 100)):
        for operation, (words, text) in edit.items():
            slow = [libreoffice("highlight", "{in}")] if (name, operation) == ("sparse", "highlight") else []
            yield Case(
                f".docx 1,000 pages, {name}, {operation}", f"{name}.docx",
                [pluvo(*words, *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1", over_result=True), lxml(operation, *text),
                 *slow],
                {"limit": ("at most", factor), "lxml": ("at least", quicker)},
                right=changed(operation, *text), memory=memory)
    yield Case(".docx 1,000 pages, sparse, find", "sparse.docx",
               [pluvo("find", "--quiet", *BLOCK, "{in}"), limit("docx-find", "{in}", BEGIN), lxml("find")],
               {"limit": ("at most", 2.2), "lxml": ("at least", 5)}, changes=False)
    for name in ("adversarial", "none"):
        yield Case(f".docx 1,000 pages, {name}, highlight", f"{name}.docx",
                   [pluvo("highlight", *BLOCK, "{in}"), beside("sparse", "sparse.docx", "highlight", *BLOCK, "{in}"),
                    lxml("highlight")], {"pluvo, sparse": ("at most", 1.6)}, memory=100)
    for operation, words in (("find", ["find", "--quiet"]), ("highlight", ["highlight"]),
                             ("replace", ["replace", "--text", TEXT]), ("delete", ["delete"]),
                             ("insert", ["insert", "--before", "--text", TEXT])):
        peers = [lxml("highlight"), python_docx("highlight")] if operation == "highlight" else []
        yield Case(f".docx 2 pages, {operation}", "pages-2.docx",
                   [pluvo(*words, *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1"), *peers],
                   {"self": ("ms at most", 12)}, changes=operation != "find",
                   right=changed("highlight") if operation == "highlight" else None, repeat=30)
    yield Case("start-up", "pages-2.docx", [pluvo("--version"), Job("true", ["true"])],
               {"true": ("ms more at most", 5)}, changes=False, repeat=50)
    yield Case(".docx 50 pages, highlight", "pages-50.docx",
               [pluvo("highlight", *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1"), lxml("highlight"),
                python_docx("highlight")], {}, right=changed("highlight"))
    yield Case("folder of 500 .docx, highlight", "folder",
               [pluvo("highlight", "--jobs", "1", *BLOCK, "{files}"),
                Job("limit", ["sh", "-c", f'for f in "$0"/*; do {LIMIT} docx "$f" "$1" "{BEGIN}" 1; done', "{in}", "{out}"]),
                Job("lxml", ["/usr/bin/python3", str(BENCH / "peers/with_lxml.py"), "highlight", BEGIN, END, "{files}"]),
                libreoffice("highlight", "{files}")],
               {"limit": ("at most", 3), "lxml": ("at least", 6)})
    for operation, words in (("find", ["find", "--quiet"]), ("highlight", ["highlight"])):
        yield Case(f"folder of 500 .docx, {operation}, two jobs", "folder",
                   [pluvo(*words, "--jobs", "2", *BLOCK, "{files}"),
                    beside("one job", "folder", *words, "--jobs", "1", *BLOCK, "{files}")],
                   {"pluvo, one job": ("at least", 1.7)} if operation == "find" else {}, changes=operation != "find")


def text_cases():
    def perl(operation, *rest):
        return Job("perl", ["perl", str(BENCH / "peers/find.pl"), operation, BEGIN, END, *rest])

    whole = ["--unit", "document"]
    yield Case(".txt 200 MB, sparse, find", "sparse.txt",
               [pluvo("find", "--quiet", "--match-case", *whole, *BLOCK, "{in}"), limit("text-find", "{in}", BEGIN),
                perl("find", "{in}"), Job("ripgrep", ["rg", "-U", "--multiline-dotall", "-c", f"{BEGIN}.*?{END}", "{in}"])],
               {"perl": ("at least", 2)}, changes=False, memory=240)
    yield Case(".txt 200 MB, sparse, find, any case", "sparse.txt",
               [pluvo("find", "--quiet", *whole, *BLOCK, "{in}"),
                beside("match case", "", "find", "--quiet", "--match-case", *whole, *BLOCK, "{in}"), perl("find", "{in}", "i")],
               {"pluvo, match case": ("at most", 2)}, changes=False, memory=240)
    yield Case(".txt 200 MB, sparse, replace", "sparse.txt",
               [pluvo("replace", "--match-case", *whole, *BLOCK, "--text", TEXT, "{in}"),
                limit("text", "{in}", "{out}", BEGIN), perl("replace", TEXT, "{in}")],
               {"perl": ("at least", 2)}, memory=240)


def verdict(case, ours, peer):
    ratio = ours.median / peer.median
    kind, bound = case.must.get(peer.name, (None, None))
    if kind == "at most":
        return f"{ratio:.2f} times (must {bound})", ratio <= bound
    if kind == "at least":
        return f"{1 / ratio:.1f} times faster (must {bound})", 1 / ratio >= bound
    if kind == "ms more at most":
        more = (ours.median - peer.median) * 1000
        return f"{more:.1f} ms more (must {bound})", more <= bound
    return (f"{ratio:.2f} times" if ratio >= 1 else f"{1 / ratio:.1f} times faster"), True


def own_verdict(case, ours):
    """What PLUVO's own row has to hold, and whether it does."""
    words, holds = [], True
    if case.memory:
        words.append(f"memory must {case.memory:.0f} MB")
        holds &= max(ours.memory) <= case.memory
    if "self" in case.must:
        words.append(f"must {case.must['self'][1]} ms")
        holds &= ours.median * 1000 <= case.must["self"][1]
    return "; ".join(words), holds


def apart(right, source, result):
    """In a process of its own: a program started by a large process is counted as that large."""
    checking = multiprocessing.get_context("fork").Process(target=right, args=(source, result))
    checking.start()
    checking.join()
    if checking.exitcode != 0:
        sys.exit(f"{source.name}: the result is wrong")


def run(case, data, repeat):
    source = data / case.source
    with tempfile.TemporaryDirectory(dir=data) as folder:
        scratch = Path(folder)
        subprocess.run(["chattr", "+T", folder], check=False, stderr=subprocess.DEVNULL)  # folders in it lie far apart
        for turn in range(case.repeat or repeat):
            for job in case.jobs:
                if job.once and turn > 0:
                    continue
                result = job.run(source, scratch, keep_input=not case.changes)
                if turn == 0 and job.name == "pluvo" and case.right:
                    apart(case.right, source, result)
                if turn == 0 and job.name == "pluvo" and any(other.over_result for other in case.jobs):
                    (scratch / "result").mkdir()
                    shutil.copyfile(result, scratch / "result" / source.name)
    ours = case.jobs[0]
    lines, good = [], True
    for job in case.jobs:
        text, holds = own_verdict(case, ours) if job is ours else verdict(case, ours, job)
        good &= holds
        lines.append(f"| {case.name if job is ours else ''} | {job.name} | {job.median * 1000:.1f} ms | {job.spread * 100:.0f} % "
                     f"| {max(job.memory):.0f} MB | {text}{'' if holds else ' **missed**'} |")
    print("\n".join(lines), flush=True)
    return lines, good


def flush_cost(folder):
    """What it takes to flush a small new file, in ms: the floor of everything that saves."""
    times = []
    with tempfile.TemporaryDirectory(dir=folder) as scratch:
        for number in range(15):
            with open(os.path.join(scratch, str(number)), "wb") as file:
                file.write(b"x" * 100)
                file.flush()
                start = time.perf_counter()
                os.fsync(file.fileno())
                times.append(time.perf_counter() - start)
    return statistics.median(times) * 1000


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        name = next((line.split(":")[1].strip() for line in info if line.startswith("model name")), platform.machine())
    return f"{name}, {os.cpu_count()} cores, Linux {platform.release()}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--repeat", type=int, default=7)
    parser.add_argument("--only", default="")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("data", type=Path)
    options = parser.parse_args()
    head = ["| case | program | median | spread (10-90 %) | memory | PLUVO beside it |", "|---|---|---|---|---|---|"]
    print("\n".join(head))
    rows, good = [], True
    load, flush = os.getloadavg()[0], flush_cost(options.data)
    for case in [*docx_cases(), *text_cases()]:
        if options.only in case.name:
            lines, holds = run(case, options.data, options.repeat)
            rows += lines
            good &= holds
    if options.write:
        page = ROOT / "docs/benchmarks.md"
        text = page.read_text(encoding="utf-8") if page.exists() else "# Benchmarks\n\n<!-- table -->\n<!-- end -->\n"
        before, rest = text.split("<!-- table -->")
        after = rest.split("<!-- end -->")[1]
        page.write_text(before + "<!-- table -->\n" f"Measured on {machine()}; {options.repeat} runs each, in alternation; "
                        f"a flush takes {flush:.1f} ms; load {load:.1f} at the beginning, {os.getloadavg()[0]:.1f} at the end.\n\n"
                        + "\n".join(head + rows) + "\n<!-- end -->" + after, encoding="utf-8")
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
