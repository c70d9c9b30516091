#!/usr/bin/env python3
"""Builds the documents that the dialog's links open from docs/instructions.md.

    instructions.py SOURCE FOLDER     writes Readme.txt and Instructions.doc into FOLDER

The source has headings (#, ##), paragraphs and lists (-) of one line each, and **bold** words.
Instructions.doc holds Rich Text, which word processors open under that name. The same source gives the same bytes.
"""
import sys
import textwrap
from pathlib import Path

KINDS = {"# ": "Title", "## ": "heading 1", "- ": "List Paragraph"}
STYLES = {  # size in half points, bold, indent and spacing in twentieths of a point
    "Normal": (22, False, 0, 120),
    "Title": (40, True, 0, 240),
    "heading 1": (28, True, 0, 240),
    "List Paragraph": (22, False, 360, 60),
}


def paragraphs(source):
    """(style, text) of each line that is not empty."""
    for line in source.splitlines():
        if line.strip():
            prefix = next((p for p in KINDS if line.startswith(p)), "")
            yield KINDS.get(prefix, "Normal"), line[len(prefix):]


def read_me(source):
    lines = []
    for style, text in paragraphs(source):
        text = text.replace("**", "")
        indent = "  - " if style == "List Paragraph" else ""
        if not indent or (lines and not lines[-1].startswith("  ")):
            lines.append("")
        lines += textwrap.wrap(text, 78, initial_indent=indent, subsequent_indent=" " * len(indent))
        if style in ("Title", "heading 1"):
            lines.append(("=" if style == "Title" else "-") * len(text))
    return "".join(line + "\r\n" for line in lines[1:])


def rich(text):
    """The text in the letters of RTF, others by the numbers of their UTF-16 units."""
    units = memoryview(text.encode("utf-16-le")).cast("H")
    for unit in units:
        if unit < 0x80:
            yield "\\" + chr(unit) if chr(unit) in "\\{}" else chr(unit)
        else:
            yield f"\\u{unit - 0x10000 if unit > 0x7FFF else unit} "


def runs(text):
    for at, part in enumerate(text.split("**")):
        written = "".join(rich(part))
        yield f"{{\\b {written}}}" if at % 2 else written


def look(style):
    size, bold, indent, spacing = STYLES[style]
    number = list(STYLES).index(style)
    return f"\\s{number}\\li{indent}\\sb{spacing}\\sa60\\f0\\fs{size}" + ("\\b" if bold else "")


def instructions(source):
    yield "{\\rtf1\\ansi\\ansicpg1252\\uc0\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}"
    yield "{\\stylesheet" + "".join(f"{{{look(style)} {style};}}" for style in STYLES) + "}"
    yield "\\paperw11906\\paperh16838\\margl1134\\margr1134\\margt1134\\margb1134"
    for style, text in paragraphs(source):
        shown = "\u2022  " + text if style == "List Paragraph" else text
        yield f"\\pard\\plain{look(style)} {''.join(runs(shown))}\\par"
    yield "}"


def main(source_path, folder):
    source = Path(source_path).read_text(encoding="utf-8")
    Path(folder).mkdir(parents=True, exist_ok=True)
    Path(folder, "Readme.txt").write_bytes(read_me(source).encode("utf-8"))
    text = "".join(line + "\r\n" for line in instructions(source))
    Path(folder, "Instructions.doc").write_bytes(text.encode("ascii"))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
