"""Whether a changed document is right: the exact characters highlighted, the exact remaining text, formatting kept."""

import zipfile

from lxml import etree

from peers.with_lxml import W, find


def characters(path):
    """Each character of the main text with its run's properties less the highlight, and its highlight."""
    with zipfile.ZipFile(path) as archive:
        root = etree.fromstring(archive.read("word/document.xml"))
    known, out = {}, []
    for paragraph in root.iter(W + "p"):
        for t in paragraph.iter(W + "t"):
            properties = t.getparent().find(W + "rPr")
            formatting, colour = b"", None
            if properties is not None:
                mark = properties.find(W + "highlight")
                if mark is not None:
                    colour = mark.get(W + "val")
                formatting = b"".join(
                    etree.tostring(child, method="c14n", with_tail=False) for child in properties if child is not mark)
            formatting = known.setdefault(formatting, len(known))
            formatting = [key for key, value in known.items() if value == formatting][0]
            out.extend((unit, formatting, colour) for unit in t.text or "")
        out.append(("\n", b"", None))
    return out


def others(path):
    with zipfile.ZipFile(path) as archive:
        return [(m.filename, m.CRC) for m in archive.infolist() if m.filename != "word/document.xml"]


def check(original, changed, operation, begin, end, text=""):
    """Raises AssertionError with what is wrong."""
    before, after = characters(original), characters(changed)
    blocks = find("".join(unit for unit, _, _ in before), begin, end)
    expected = []
    at = 0
    for start, stop in blocks:
        expected += before[at:start]
        if operation == "highlight":
            expected += [(u, f, "yellow" if u != "\n" else None) for u, f, _ in before[start:stop]]
        else:
            expected += [(u, before[start][1], None) for u in text]
        at = stop
    expected += before[at:]
    assert len(expected) == len(after), f"{len(after)} characters instead of {len(expected)}"
    for place, (wanted, got) in enumerate(zip(expected, after)):
        assert wanted == got, f"character {place}: {got} instead of {wanted}"
    assert others(original) == others(changed), "other members differ"
    return len(blocks)
