"""Whether what PLUVO did is right: the exact characters highlighted, the exact remaining text, formatting kept, the
exact number of blocks found."""

import json
import re
import subprocess
import tempfile
import zipfile
from pathlib import Path

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


def check(original, changed, operation, begin, end, text="", blocks=None, isolated=True):
    """Raises AssertionError, which names the fault. An isolated change leaves the package's other members."""
    before, after = characters(original), characters(changed)
    if blocks is None:
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
    assert not isolated or others(original) == others(changed), "other members differ"
    return len(blocks)


def check_binary(original, changed, begin, end):
    """The same of binary documents, as LibreOffice reads both."""
    with tempfile.TemporaryDirectory() as home:
        read = []
        for name, path in (("before", original), ("after", changed)):
            copy = Path(home) / f"{name}.doc"
            copy.write_bytes(Path(path).read_bytes())
            subprocess.run(["soffice", "--headless", "--norestore", f"-env:UserInstallation=file://{home}/profile",
                            "--convert-to", "docx", "--outdir", home, copy], check=True, stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL)
            read.append(copy.with_suffix(".docx"))
        return check(*read, "highlight", begin, end, isolated=False)


def check_only_block(original, changed, begin, end):
    """One block is highlighted, wherever its beginning is."""
    after = characters(changed)
    marked = [place for place, (_, _, colour) in enumerate(after) if colour]
    block = (marked[0], marked[-1] + 1)
    text = "".join(unit for unit, _, _ in after[slice(*block)])
    assert text.startswith(begin) and text.endswith(end), f"highlighted is {text[:40]} … {text[-40:]}"
    check(original, changed, "highlight", begin, end, blocks=[block])


def check_folder(original, changed, begin, end):
    for path in sorted(original.iterdir()):
        check(path, changed / path.name, "highlight", begin, end)


RTF = re.compile(rb"\\(?:u(-?\d+) ?\\'..|'(..)|([a-z]+)(-?\d*) ?)|([{}])|([^\\{}\r\n]+)")


def rtf_characters(file):
    """The main text that generate_rtf.py wrote, and the highlight of each character."""
    text, colours, colour, outer = [], [], 0, []
    for unit, byte, word, number, brace, plain in RTF.findall(file[file.index(rb"\sectd ") :]):
        if brace:
            outer.append(colour) if brace == b"{" else None
            colour = outer.pop() if brace == b"}" and outer else colour
        elif word in (b"highlight", b"plain"):
            colour = int(number or 0)
        shown = chr(int(unit)) if unit else chr(int(byte, 16)) if byte else "\n" if word == b"par" else plain.decode()
        text.append(shown)
        colours.append(bytes([colour]) * len(shown))
    return "".join(text), b"".join(colours)


def check_rtf(original, changed, begin, end):
    before, after = original.read_bytes(), changed.read_bytes()
    text, colours = rtf_characters(after)
    expected = bytearray(len(text))
    for start, stop in find(text, begin, end):
        expected[start:stop] = b"\3" * (stop - start)
    assert expected.count(3) > 0 and bytes(expected) == colours, "other characters are highlighted"
    after = re.sub(rb"\\highlight\d ", b"", after).replace(rb"\red255\green255\blue0;", b"")
    assert before == after, "other bytes differ"


def pattern(begin, end, flags=0):
    return re.compile(re.escape(begin.encode()) + b".*?" + re.escape(end.encode()), re.DOTALL | flags)


def check_text(original, changed, begin, end, text):
    expected = pattern(begin, end).sub(text.encode(), original.read_bytes())
    assert changed.read_bytes() == expected, "the remaining text is another"


def check_encoded(original, changed, begin, end, text, encoding):
    """The same of a text in any encoding, which Python decodes as a whole and encodes again."""
    before = original.read_bytes().decode(encoding)
    assert before.encode(encoding) == original.read_bytes(), "the text cannot be written as it was"
    expected = re.sub(re.escape(begin) + ".*?" + re.escape(end), text, before, flags=re.DOTALL)
    assert changed.read_bytes() == expected.encode(encoding), "the remaining text is another"


def check_found(command, original, begin, end, flags=0, encoding=""):
    """The command finds as many blocks as are there."""
    if encoding:
        text = original.read_bytes().decode(encoding)
        expected = len(re.findall(re.escape(begin) + ".*?" + re.escape(end), text, re.DOTALL))
    elif original.suffix == ".txt":
        expected = len(pattern(begin, end, flags).findall(original.read_bytes()))
    else:
        # Of what a binary document was made.
        source = original.with_suffix(".docx")
        expected = len(find("".join(unit for unit, _, _ in characters(source)), begin, end))
    lines = subprocess.run([*command, "--json", original], capture_output=True, text=True).stdout.splitlines()
    found = json.loads(lines[-1])["summary"]["found"]
    assert found == expected, f"{found} blocks found instead of {expected}"


def check_page(original, changed, blocks):
    """Without the spans of the highlight the page is the old one, byte for byte."""
    mark = b'<span style="background:yellow;mso-highlight:yellow">'
    with open(original, "rb") as old, open(changed, "rb") as new:
        before, after = old.read(), new.read()
    spans = re.compile(re.escape(mark) + rb"([^<]*)</span>")
    assert spans.sub(rb"\1", after) == before, "other bytes differ"
    marked = re.sub(rb"<[^>]*>", b"", b"".join(m.group(1) for m in spans.finditer(after))).decode()
    assert marked.count("the Lessee") == blocks, f"{marked.count('the Lessee')} blocks instead of {blocks}"
    return blocks
