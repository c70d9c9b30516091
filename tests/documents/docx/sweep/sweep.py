#!/usr/bin/env python3
"""Goes over a folder of real Word documents with docx_probe and, where it is installed, LibreOffice.

    sweep.py PROBE CORPUS [--seeds 1,2] [--libreoffice] [--scratch FOLDER]

Opens each; writes each unchanged; highlights every "e"; runs a random program of edits. Each result is read again by
the probe and checked by the package checker. With --libreoffice the text that LibreOffice reads from each edited
result is compared with the text it should have, normalised (see flat_text.py). LibreOffice is given a copy in which
content controls are unwrapped and nothing floats: it repeats or drops text in the former and moves frames and floating
tables out of the text.
"""

import argparse
import collections
import os
import re
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

CONTROL_TAGS = re.compile(rb"</?w:sdt>|</?w:sdtContent>|<w:sdtPr>.*?</w:sdtPr>|<w:sdtPr/>|<w:sdtEndPr>.*?</w:sdtEndPr>|"
                          rb"<w:sdtEndPr/>|<w:(?:framePr|tblpPr)\b[^>]*/>", re.S)  # fmt: skip


def probe(arguments, *call):
    try:
        done = subprocess.run([arguments.probe, *map(str, call)], capture_output=True, timeout=60, check=False)
    except subprocess.TimeoutExpired:
        return 99, "took more than 60 seconds"
    return done.returncode, done.stdout.decode("utf-8", "replace").strip()


def fields(line):
    return dict(re.findall(r"(\w+)=(\S*)", line))


def open_all(arguments, documents):
    codes = collections.Counter()
    slowest, largest, opened = (0, ""), (0, ""), []
    for document in documents:
        code, line = probe(arguments, "read", document)
        if code != 0:
            print(f"FAILED read {document.name}: {code} {line}")
        values = fields(line)
        codes[values.get("refused", "opened")] += 1
        if "length" in values:
            opened.append(document)
            slowest = max(slowest, (int(values["ms"]), document.name))
            largest = max(largest, (int(values["kb"]), document.name))
    print("opened and refused:", dict(codes))
    print("longest: %d ms %s; largest memory: %d KB %s" % (*slowest, *largest))
    return opened


def each(arguments, mode, documents, *more):
    failed = 0
    for document in documents:
        target = [] if mode == "same" else [arguments.scratch / (f"{mode}{''.join(more)}-" + document.name), *more]
        code, line = probe(arguments, mode, document, *target)
        if code != 0:
            failed += 1
            print(f"FAILED {mode} {' '.join(more)} {document.name}: {code} {line}")
    print(f"{mode} {' '.join(more)}: {len(documents)} documents, {failed} failed")


def unwrapped(document, target):
    with zipfile.ZipFile(document) as old, zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as new:
        for info in old.infolist():
            data = old.read(info)
            new.writestr(info.filename, CONTROL_TAGS.sub(b"", data) if info.filename.endswith(".xml") else data)


def convert(documents, folder, profile):
    for start in range(0, len(documents), 15):
        subprocess.run(["soffice", f"-env:UserInstallation=file://{profile}", "--headless", "--convert-to", "fodt",
                        "--outdir", str(folder), *map(str, documents[start : start + 15])],
                       capture_output=True, timeout=300, check=False)  # fmt: skip


def compare(arguments, documents, seed):
    from flat_text import normal, text_of

    folder = arguments.scratch / f"lo{seed}"
    folder.mkdir(exist_ok=True)
    copies = []
    for number, document in enumerate(documents):
        copies.append(folder / f"{number}.docx")
        unwrapped(arguments.scratch / f"edit{seed}-{document.name}", copies[-1])
    convert(copies, folder, arguments.scratch / "profile")
    differ = 0
    for copy, document in zip(copies, documents):
        ours = normal((arguments.scratch / f"edit{seed}-{document.name}.txt").read_text("utf-8", "replace"))
        flat = copy.with_suffix(".fodt")
        theirs = normal(text_of(flat)) if flat.exists() else "(not converted)"
        if ours == theirs:
            continue
        differ += 1
        at = len(os.path.commonprefix([ours, theirs]))
        print(f"differs: {document.name}\n  ours   {ours[max(0, at - 30) : at + 50]!r}")
        print(f"  theirs {theirs[max(0, at - 30) : at + 50]!r}")
    print(f"seed {seed}: {differ} of {len(documents)} differ from what LibreOffice reads")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("probe")
    parser.add_argument("corpus", type=Path)
    parser.add_argument("--seeds", default="1")
    parser.add_argument("--libreoffice", action="store_true")
    parser.add_argument("--scratch", type=Path)
    arguments = parser.parse_args()
    arguments.scratch = arguments.scratch or Path(tempfile.mkdtemp(prefix="docx-sweep-"))
    arguments.scratch.mkdir(exist_ok=True, parents=True)
    sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

    kinds = (".docx", ".docm", ".dotx", ".dotm")
    documents = sorted(p for p in arguments.corpus.rglob("*") if p.suffix.lower() in kinds)
    opened = open_all(arguments, documents)
    each(arguments, "same", opened)
    each(arguments, "mark", opened)
    for seed in arguments.seeds.split(","):
        each(arguments, "edit", opened, seed)
        if arguments.libreoffice:
            compare(arguments, opened, seed)


if __name__ == "__main__":
    main()
