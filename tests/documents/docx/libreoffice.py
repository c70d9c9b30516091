"""The running text of a flat OpenDocument file, for comparison with the text this project reads.

Left out: notes, annotations, drawings and their text boxes, list labels, phonetic guides. Deleted text that is
tracked stands where it was deleted.
"""

import re

from lxml import etree

TEXT = "{urn:oasis:names:tc:opendocument:xmlns:text:1.0}"
OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"
DRAW = "{urn:oasis:names:tc:opendocument:xmlns:drawing:1.0}"
TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"

EXTENSION = "{urn:org:documentfoundation:names:experimental:office:xmlns:loext:1.0}"

SKIPPED = {
    TEXT + "note", OFFICE + "annotation", OFFICE + "annotation-end", TEXT + "ruby-text", TEXT + "tracked-changes",
    TEXT + "sequence-decls", TEXT + "variable-decls", TEXT + "user-field-decls", OFFICE + "forms",
    TABLE + "table-header-columns", OFFICE + "event-listeners",
    TEXT + "table-of-content-source", TEXT + "index-source", TEXT + "bibliography-source",
    TEXT + "alphabetical-index-source", TEXT + "user-index-source", TEXT + "illustration-index-source",
    TEXT + "table-index-source",
}  # fmt: skip


def text_of(path):
    tree = etree.parse(str(path), etree.XMLParser(huge_tree=True))
    body = tree.find(f".//{OFFICE}body/{OFFICE}text")
    deleted = {}
    for region in body.iter(TEXT + "changed-region"):
        deletion = region.find(TEXT + "deletion")
        if deletion is not None:
            deleted[region.get(TEXT + "id")] = deletion
    out = []

    def walk(node):
        tag = node.tag
        if not isinstance(tag, str) or tag in SKIPPED or tag.startswith(DRAW):
            return
        if tag == TEXT + "s":
            out.append(" " * int(node.get(TEXT + "c", "1")))
        elif tag == TEXT + "tab":
            out.append("\t")
        elif tag == TEXT + "line-break":
            pass  # LibreOffice loses those in content controls
        elif tag == TEXT + "change":
            region = deleted.get(node.get(TEXT + "change-id"))
            for child in region if region is not None else []:
                walk_inside(child)
        else:
            walk_inside(node)

    def walk_inside(node):
        holds_text = node.tag.startswith((TEXT, EXTENSION))
        if node.text and holds_text:
            out.append(node.text)
        for child in node:
            walk(child)
            if child.tail and holds_text:
                out.append(child.tail)
        if node.tag in (TEXT + "p", TEXT + "h", TABLE + "table-cell"):
            out.append("\n")

    walk_inside(body)
    return "".join(out)


def normal(text):
    """What two programs can agree on: no anchors and marks, hyphens alike, blanks of any kind and number one."""
    text = re.sub("[\u0001\u000b\u0002\u0005\u0008\u00ad\u001f\u200b-\u200f\u202a-\u202e\u2060\ufeff\ufffc]", "", text)
    text = text.replace("\u001e", "-").replace("\u2011", "-")
    return re.sub("[\\s\u0007\u000c\u000e\u00a0]+", " ", text).strip()
