#!/usr/bin/env python3
"""Builds the documents that the dialog's links open from docs/instructions.md.

    instructions.py SOURCE FOLDER     writes Readme.txt and Instructions.doc into FOLDER

The source has headings (#, ##), paragraphs and lists (-) of one line each, and **bold** words.
Instructions.doc holds a .docx package; word processors go by content. The same source gives the same bytes.
"""
import re
import sys
import textwrap
import zipfile
from pathlib import Path
from xml.sax.saxutils import escape

KINDS = {"# ": "Title", "## ": "Heading1", "- ": "ListParagraph"}
STYLES = [  # name, size in half points, bold, indent and spacing in twentieths of a point
    ("Title", 40, True, 0, 240),
    ("Heading1", 28, True, 0, 240),
    ("ListParagraph", 22, False, 360, 60),
    ("Normal", 22, False, 0, 120),
]
MAIN = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
WORD_TYPE = "application/vnd.openxmlformats-officedocument.wordprocessingml"
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'


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
        indent = "  - " if style == "ListParagraph" else ""
        if not indent or (lines and not lines[-1].startswith("  ")):
            lines.append("")
        lines += textwrap.wrap(text, 78, initial_indent=indent, subsequent_indent=" " * len(indent))
        if style in ("Title", "Heading1"):
            lines.append(("=" if style == "Title" else "-") * len(text))
    return "".join(line + "\r\n" for line in lines[1:])


def runs(text):
    for at, part in enumerate(re.split(r"\*\*", text)):
        if part:
            bold = "<w:rPr><w:b/></w:rPr>" if at % 2 else ""
            yield f'<w:r>{bold}<w:t xml:space="preserve">{escape(part)}</w:t></w:r>'


def body(source):
    for style, text in paragraphs(source):
        shown = "\u2022  " + text if style == "ListParagraph" else text
        yield f'<w:p><w:pPr><w:pStyle w:val="{style}"/></w:pPr>{"".join(runs(shown))}</w:p>'


def style_sheet():
    for name, size, bold, indent, spacing in STYLES:
        default = ' w:default="1"' if name == "Normal" else ""
        yield (
            f'<w:style w:type="paragraph" w:styleId="{name}"{default}><w:name w:val="{name}"/>'
            f'<w:pPr><w:spacing w:before="{spacing}" w:after="60"/><w:ind w:left="{indent}"/></w:pPr>'
            f'<w:rPr><w:rFonts w:ascii="Tahoma" w:hAnsi="Tahoma"/>{"<w:b/>" if bold else ""}'
            f'<w:sz w:val="{size}"/></w:rPr></w:style>'
        )


def parts(source):
    yield "[Content_Types].xml", (
        f'<Types xmlns="{PACKAGE}/content-types">'
        f'<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Override PartName="/word/document.xml" ContentType="{WORD_TYPE}.document.main+xml"/>'
        f'<Override PartName="/word/styles.xml" ContentType="{WORD_TYPE}.styles+xml"/></Types>'
    )
    yield "_rels/.rels", (
        f'<Relationships xmlns="{PACKAGE}/relationships"><Relationship Id="r1" '
        f'Type="{OFFICE}/officeDocument" Target="word/document.xml"/></Relationships>'
    )
    yield "word/_rels/document.xml.rels", (
        f'<Relationships xmlns="{PACKAGE}/relationships"><Relationship Id="r1" '
        f'Type="{OFFICE}/styles" Target="styles.xml"/></Relationships>'
    )
    yield "word/styles.xml", f'<w:styles xmlns:w="{MAIN}">{"".join(style_sheet())}</w:styles>'
    yield "word/document.xml", (
        f'<w:document xmlns:w="{MAIN}"><w:body>{"".join(body(source))}'
        f'<w:sectPr><w:pgSz w:w="11906" w:h="16838"/>'
        f'<w:pgMar w:top="1134" w:right="1134" w:bottom="1134" w:left="1134" w:header="567" w:footer="567" '
        f'w:gutter="0"/></w:sectPr></w:body></w:document>'
    )


def main(source_path, folder):
    source = Path(source_path).read_text(encoding="utf-8")
    Path(folder).mkdir(parents=True, exist_ok=True)
    Path(folder, "Readme.txt").write_bytes(read_me(source).encode("utf-8"))
    with zipfile.ZipFile(Path(folder, "Instructions.doc"), "w", zipfile.ZIP_DEFLATED) as package:
        for name, content in parts(source):
            package.writestr(zipfile.ZipInfo(name), HEAD + content, zipfile.ZIP_DEFLATED)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
