#!/usr/bin/python3
"""Compares the stories beside main text as LibreOffice's own interface reads them with ours, both ways.

    PLUVO_EDITED=FOLDER docx_tests --gtest_filter='Corpus.*'; libreoffice_stories.py FOLDER  (or doc_tests)

A field is anything there, since LibreOffice makes its text anew. Headers are compared as sets: LibreOffice repeats them
for each of its page styles. Of binary documents main text is compared, too.
"""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

import uno
from com.sun.star.beans import PropertyValue

from libreoffice import normal, unwrapped

FIELD = "\ue000"
PLACES = {"7": "header", "6": "header", "10": "header", "9": "footer", "8": "footer", "11": "footer", "2": "footnote",
          "3": "endnote", "4": "comment", "5": "box"}  # fmt: skip

# Where the two differ for a known cause, by the end of the name.
SETTLED = {
    "5Errors.docx": "LibreOffice drops the text of a comment that no reference names",
    "60293.docx": "LibreOffice does not take \"odd\", which no schema knows, for a kind of header",
    "MedianFax_TP10192743.dotx": "LibreOffice drops a header of even pages that are not set apart",
    "complexity.docx": "LibreOffice puts a table of a footer in a box, and drops a footer of even pages",
    "complexity_-_part_2.docx": "LibreOffice puts a table of a footer in a box, and drops a footer of even pages",
    "complex0.docx": "LibreOffice takes text of a header's frame for a box",
    "complex1_NOR.docx": "LibreOffice takes text of a header's frame for a box",
    "CriticalIssueReport_TP10187011.dotx": "LibreOffice drops the notice that a footnote continues",
    "OrielFax_TP10192747.dotx": "LibreOffice moves a tab and a break within a content control",
    "Complex01.docx": "WordArt is a box in LibreOffice; we tell it as unreached",
    "WordWithAttachments.docx": "WordArt is a box in LibreOffice; we tell it as unreached",
    "chinese_watermark_with_font_size_color_specified.docx": "WordArt is a box in LibreOffice; we tell it as unreached",
    "53379.doc": "LibreOffice makes a page number in a frame a box",
    "o_kurs.doc": "LibreOffice makes a page number in a frame a box",
    "ob_is.doc": "LibreOffice makes a page number in a frame a box",
    "Complex01.doc": "WordArt is a box in LibreOffice; we tell it as unreached",
    "WordWithAttachments.doc": "WordArt is a box in LibreOffice; we tell it as unreached",
    "chinese_watermark_with_font_size_color_specified.doc": "WordArt is a box in LibreOffice; we tell it as unreached",
    "testPictures.doc": "WordArt is a box in LibreOffice; we tell it as unreached",
    "MedianFax_TP10192743.doc": "LibreOffice drops a header of even pages that are not set apart",
    "complexity.doc": "LibreOffice drops a footer of even pages that are not set apart",
    "complexity_-_part_2.doc": "LibreOffice drops a footer of even pages that are not set apart",
    "testWORD_2006ml.doc": "LibreOffice drops headers and footers of even pages that are not set apart",
    "complex0.doc": "LibreOffice drops numbers of a sequence without a name",
    "testExternalRefs.doc": "LibreOffice moves a text of another file to the end, and does not fetch it",
    "testWORD_phonetic.doc": "LibreOffice makes text of a phonetic guide that is a formula's code",
    "POIHWPFFuzzer-4951943183990784.doc": "LibreOffice moves cells and makes fields where damaged formatting has none",
}


class Office:
    """One soffice under a profile of its own, begun anew when it was lost."""

    def __init__(self, work):
        self.work, self.process, self.context = work, None, None

    def start(self):
        self.stop()
        pipe = f"pluvo{os.getpid()}"
        self.process = subprocess.Popen(
            ["soffice", f"-env:UserInstallation=file://{self.work}/profile", "--headless", "--norestore", "--nologo",
             f"--accept=pipe,name={pipe};urp;"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)  # fmt: skip
        resolver = uno.getComponentContext().ServiceManager.createInstance("com.sun.star.bridge.UnoUrlResolver")
        for _ in range(120):
            time.sleep(0.5)
            try:
                self.context = resolver.resolve(f"uno:pipe,name={pipe};urp;StarOffice.ComponentContext")
            except Exception:  # pylint: disable=broad-except
                continue
            return
        sys.exit("soffice does not answer")

    def stop(self):
        if self.process is not None:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        self.process = self.context = None

    def read(self, path):
        if self.context is None:
            self.start()

        def property_of(name, value):
            made = PropertyValue()
            made.Name, made.Value = name, value
            return made

        signal.alarm(90)
        try:
            # A text without a view: with one, LibreOffice without windows ends at the first comment.
            document = self.context.ServiceManager.createInstanceWithContext("com.sun.star.text.TextDocument", self.context)
            kind = "MS Word 97" if path.suffix == ".doc" else "MS Word 2007 XML"
            document.load((property_of("URL", path.as_uri()), property_of("FilterName", kind), property_of("Hidden", True)))
            found = list(stories_of(document))
            if path.suffix == ".doc":
                found.append(("main text", text_of(document.Text)))
            document.dispose()
            return found
        except Exception as error:  # pylint: disable=broad-except
            print(f"{path.name}: {type(error).__name__}")
            self.stop()
            return None
        finally:
            signal.alarm(0)


def elements(enumeration):
    while enumeration.hasMoreElements():
        yield enumeration.nextElement()


def text_of(text):
    parts = []
    for paragraph in elements(text.createEnumeration()):
        if paragraph.supportsService("com.sun.star.text.TextTable"):
            parts += [text_of(paragraph.getCellByName(name)) for name in paragraph.getCellNames()]
            continue
        is_code = False
        for portion in elements(paragraph.createEnumeration()):
            kind = portion.TextPortionType
            if kind.startswith("TextFieldS") or kind == "TextFieldEnd":
                is_code = kind == "TextFieldStart"
            elif is_code:
                continue
            elif kind == "TextField":
                annotation = portion.TextField.supportsService("com.sun.star.text.textfield.Annotation")
                parts.append("" if annotation else FIELD)
            elif kind in ("Text", "InContentMetadata", "ContentControl", "Ruby", "SoftPageBreak"):
                parts.append(text_of(portion) if kind in ("InContentMetadata", "ContentControl") else portion.getString())
        parts.append("\n")
    return "".join(parts)


def shapes_of(shapes):
    for i in range(shapes.getCount()):
        shape = shapes.getByIndex(i)
        if hasattr(shape, "getCount") and shape.supportsService("com.sun.star.drawing.GroupShape"):
            yield from shapes_of(shape)
        elif hasattr(shape, "createEnumeration"):
            yield shape


def stories_of(document):
    styles = document.StyleFamilies.getByName("PageStyles")
    for name in styles.ElementNames:
        style = styles.getByName(name)
        for kind in ("Header", "Footer"):
            if not getattr(style, kind + "IsOn"):
                continue
            for pages in ("", "Left", "First"):
                text = getattr(style, f"{kind}Text{pages}", None)
                if text is not None:
                    yield kind.lower(), text_of(text)
    for kind, notes in (("footnote", document.Footnotes), ("endnote", document.Endnotes)):
        for i in range(notes.getCount()):
            yield kind, text_of(notes.getByIndex(i))
    for field in elements(document.TextFields.createEnumeration()):
        if field.supportsService("com.sun.star.text.textfield.Annotation"):
            yield "comment", field.Content
    for shape in shapes_of(document.DrawPage):
        yield "box", text_of(shape)


def fits(ours, theirs):
    """Whether a text is another with something for each of its fields, blanks aside."""
    first, *pieces = (piece.replace(" ", "") for piece in normal(theirs).split(FIELD))
    text = ours.replace(" ", "")
    if not pieces or not text.startswith(first):
        return text == first
    at, last = len(first), pieces.pop()
    for piece in pieces:
        found = text.find(piece, at)
        if found < 0:
            return False
        at = found + len(piece)
    return text.endswith(last) and at <= len(text) - len(last)


def unshown_in(path):
    """The kinds of headers and footers that no page shows, which LibreOffice drops."""
    with zipfile.ZipFile(path) as archive:
        parts = b"".join(archive.read(name) for name in archive.namelist() if re.search(r"/(settings|document\d*)\.xml$", name))
    if b"erReference" not in parts:
        return {"6", "7", "8", "9", "10", "11"}
    return set() if b"evenAndOddHeaders" in parts else {"6", "8"}


def is_empty(text):
    return not normal(text).replace(FIELD, "").strip()


def compare(ours, theirs):
    """The stories of ours that are not theirs, and theirs that are not ours."""
    rest = list(theirs)
    # The fewest fields first, since a field is anything.
    rest.sort(key=lambda story: is_empty(story[1]))
    lacking, met = [], set()
    for kind, text in ours:
        found = [i for i, (k, t) in enumerate(rest) if k == kind and fits(text, t)]
        free = [i for i in found if i not in met or kind in ("header", "footer")]
        if kind in ("header", "footer"):
            met.update(free)
        elif free:
            met.add(free[0])
        if not free and text:
            lacking.append((kind, text))
    return lacking, [(k, normal(t)) for i, (k, t) in enumerate(rest) if i not in met and not is_empty(t)]


def main(folder):
    def late(_signal, _frame):
        raise TimeoutError

    signal.signal(signal.SIGALRM, late)
    work = Path(tempfile.mkdtemp(prefix="docx-stories-"))
    office = Office(work)
    documents = stories = wrong = known = unread = unlike = 0
    for document in sorted(p for p in folder.iterdir() if p.suffix != ".txt"):
        lines = (line.partition(" ") for line in Path(f"{document}.stories.txt").read_text("utf-8", "replace").split("\n") if line)
        is_binary = document.suffix == ".doc"
        copy = work / f"{documents}{'.doc' if is_binary else '.docx'}"
        (shutil.copy if is_binary else unwrapped)(document, copy)
        unshown = set() if is_binary else unshown_in(copy)
        ours = [(PLACES[kind], normal(text)) for kind, _, text in lines if kind not in unshown]
        if is_binary:
            ours.append(("main text", normal(Path(f"{document}.txt").read_text("utf-8", "replace"))))
        documents += 1
        theirs = office.read(copy)
        if theirs is None:
            unread += 1
            print(f"not read: {document.name}")
            continue
        stories += sum(bool(text) for _, text in ours)
        lacking, added = compare(ours, theirs)
        wrong += max(len(lacking), len(added))
        cause = next((why for name, why in SETTLED.items() if document.name.endswith(name)), None)
        known += max(len(lacking), len(added)) if cause else 0
        unlike += cause is None and bool(lacking or added)
        for which, all_of in (("ours", lacking), ("theirs", added)):
            for kind, text in all_of:
                print(f"{document.name}: {which} alone: {kind} {text[:150]!r}" + (f" ({cause})" if cause else ""))
        copy.unlink()
    office.stop()
    shutil.rmtree(work)
    print(f"{documents} documents, {unread} not read by LibreOffice; {stories} stories with text, {wrong} differ, "
          f"{known} for known causes; {unlike} documents differ for another")


if __name__ == "__main__":
    main(Path(sys.argv[1]))
