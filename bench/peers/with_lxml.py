#!/usr/bin/env python3
"""The job as a competent user writes it on zipfile and lxml.

    with_lxml.py find|highlight|replace BEGIN END [TEXT] FILE…

Works over runs and paragraphs, keeps the formatting of every run, saves in place through a temporary file.
"""

import copy
import os
import sys
import zipfile

from lxml import etree

W = "{http://schemas.openxmlformats.org/wordprocessingml/2006/main}"
SPACE = "{http://www.w3.org/XML/1998/namespace}space"


def gather(root):
    """The text of the document, and for each w:t its place in it."""
    texts, places, length = [], [], 0
    for paragraph in root.iter(W + "p"):
        for t in paragraph.iter(W + "t"):
            text = t.text or ""
            places.append((length, length + len(text), t))
            texts.append(text)
            length += len(text)
        texts.append("\n")
        length += 1
    return "".join(texts), places


def find(text, begin, end):
    blocks, at = [], text.find(begin)
    while at >= 0:
        stop = text.find(end, at + len(begin))
        if stop < 0:
            break
        blocks.append((at, stop + len(end)))
        at = text.find(begin, stop + len(end))
    return blocks


def split(t, offset):
    """Cuts the run of t after offset characters; returns the later run's w:t."""
    run = t.getparent()
    later = copy.deepcopy(run)
    run.addnext(later)
    later_t = later.find(W + "t")
    later_t.text, t.text = t.text[offset:], t.text[:offset]
    t.set(SPACE, "preserve")
    later_t.set(SPACE, "preserve")
    return later_t


def touched(places, blocks):
    """Every w:t that lies in a block, cut at the block's borders, with the number of its block."""
    place = 0
    for number, (start, stop) in enumerate(blocks):
        while place < len(places) and places[place][1] <= start:
            place += 1
        while place < len(places) and places[place][0] < stop:
            first, last, t = places[place]
            if first < start:
                t = split(t, start - first)
                first = start
                places[place] = (first, last, t)
            if last > stop:
                places[place] = (stop, last, split(t, stop - first))
                yield number, t
                break
            yield number, t
            place += 1


def highlight(places, blocks):
    for _, t in touched(places, blocks):
        run = t.getparent()
        properties = run.find(W + "rPr")
        if properties is None:
            properties = etree.Element(W + "rPr")
            run.insert(0, properties)
        mark = properties.find(W + "highlight")
        if mark is None:
            mark = etree.SubElement(properties, W + "highlight")
        mark.set(W + "val", "yellow")


def replace(places, blocks, text):
    last = -1
    for number, t in touched(places, blocks):
        if number != last:
            t.text = text
            last = number
        else:
            run = t.getparent()
            run.getparent().remove(run)


def work(path, operation, begin, end, text):
    with zipfile.ZipFile(path) as archive:
        root = etree.fromstring(archive.read("word/document.xml"))
        whole, places = gather(root)
        blocks = find(whole, begin, end)
        if operation == "find" or not blocks:
            return len(blocks)
        if operation == "highlight":
            highlight(places, blocks)
        else:
            replace(places, blocks, text)
        temporary = path + ".tmp"
        with zipfile.ZipFile(temporary, "w", zipfile.ZIP_DEFLATED) as out:
            for member in archive.infolist():
                data = archive.read(member)
                if member.filename == "word/document.xml":
                    data = etree.tostring(root, xml_declaration=True, encoding="UTF-8", standalone=True)
                out.writestr(member, data)
    os.replace(temporary, path)
    return len(blocks)


def main():
    operation, begin, end = sys.argv[1:4]
    text, files = (sys.argv[4], sys.argv[5:]) if operation == "replace" else ("", sys.argv[4:])
    print(sum(work(path, operation, begin, end, text) for path in files))


if __name__ == "__main__":
    main()
