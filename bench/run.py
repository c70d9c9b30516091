#!/usr/bin/env python3
"""Whole-process benchmarks: PLUVO beside the limit program and its peers, in alternation, as medians and ratios.

    run.py [--repeat N] [--only WORD] [--processor] [--write] DATA

DATA is the folder generate.py filled. With --processor the processor's time is
compared, for a machine on which other programs run. --write puts the table into docs/benchmarks.md.
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
from pathlib import Path

import scaling
from cases import ROOT, doc_cases, docx_cases, elsewhere_cases, page_cases, rtf_cases, text_cases


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


def run(case, data, repeat, processor):
    source = data / case.source
    with tempfile.TemporaryDirectory(dir=data) as folder:
        scratch = Path(folder)
        subprocess.run(["chattr", "+T", folder], check=False, stderr=subprocess.DEVNULL)  # folders in it lie far apart
        for turn in range(case.repeat or repeat):
            for job in case.jobs:
                if job.once and turn > 0:
                    continue
                result = job.run(source, scratch, keep_input=not case.changes, processor=processor)
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
    parser.add_argument("--processor", action="store_true")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("data", type=Path)
    options = parser.parse_args()
    head = ["| case | program | median | spread (10-90 %) | memory | PLUVO beside it |", "|---|---|---|---|---|---|"]
    print("\n".join(head))
    rows, good = [], True
    load, flush = os.getloadavg()[0], flush_cost(options.data)
    for case in [*docx_cases(), *doc_cases(), *rtf_cases(), *page_cases(), *elsewhere_cases(), *text_cases()]:
        if options.only in case.name:
            lines, holds = run(case, options.data, options.repeat, options.processor)
            rows += lines
            good &= holds
    if options.only in "scaling":
        print()
        lines, holds = scaling.table(options.data)
        rows += ["", *lines]
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
