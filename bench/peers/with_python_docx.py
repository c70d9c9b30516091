#!/usr/bin/env python3
"""The job as a competent user writes it on python-docx.

    with_python_docx.py find|highlight BEGIN END FILE…
"""

import copy
import sys

import docx
from docx.enum.text import WD_COLOR_INDEX
from docx.text.paragraph import Paragraph
from docx.text.run import Run

from with_lxml import find


def paragraphs(document):
    for element in document.element.body.iter("{http://schemas.openxmlformats.org/wordprocessingml/2006/main}p"):
        yield Paragraph(element, document)


def cut(run, offset):
    later = copy.deepcopy(run._r)
    run._r.addnext(later)
    tail = Run(later, run._parent)
    tail.text, run.text = run.text[offset:], run.text[:offset]
    return tail


def work(path, operation, begin, end):
    document = docx.Document(path)
    texts, places, length = [], [], 0
    for paragraph in paragraphs(document):
        for run in paragraph.runs:
            text = run.text
            places.append((length, length + len(text), run))
            texts.append(text)
            length += len(text)
        texts.append("\n")
        length += 1
    blocks = find("".join(texts), begin, end)
    if operation == "find" or not blocks:
        return len(blocks)
    place = 0
    for start, stop in blocks:
        while places[place][1] <= start:
            place += 1
        while place < len(places) and places[place][0] < stop:
            first, last, run = places[place]
            if first < start:
                run, first = cut(run, start - first), start
            if last > stop:
                places[place] = (stop, last, cut(run, stop - first))
                run.font.highlight_color = WD_COLOR_INDEX.YELLOW
                break
            run.font.highlight_color = WD_COLOR_INDEX.YELLOW
            place += 1
    document.save(path)
    return len(blocks)


def main():
    operation, begin, end = sys.argv[1:4]
    print(sum(work(path, operation, begin, end) for path in sys.argv[4:]))


if __name__ == "__main__":
    main()
