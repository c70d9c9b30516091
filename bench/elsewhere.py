#!/usr/bin/python3
"""Holds what PLUVO tells of texts elsewhere against a slow, plain reader of all parts.

    elsewhere.py words FOLDER            each word of a header, footer, note, comment or box is told, unless it also
                                         stands in main text
    elsewhere.py random FOLDER [COUNT]   random requests: the counts are those of the reader

FOLDER holds .docx files. The reader knows no layers: it takes the parts with lxml and writes down what each story
shows, paragraph by paragraph. Documents it cannot judge (hidden by styles) are left out.
"""

import json
import os
import posixpath
import random
import re
import subprocess
import sys
import unicodedata
import zipfile
from pathlib import Path

from lxml import etree

ROOT = Path(__file__).resolve().parent.parent
PLUVO = os.environ.get("PLUVO", str(ROOT / "build/release/bin/pluvo"))
WORD = ("http://schemas.openxmlformats.org/wordprocessingml/2006/main", "http://purl.oclc.org/ooxml/wordprocessingml/main")
KNOWN = {"http://schemas.microsoft.com/office/word/2010/wordml", "http://schemas.microsoft.com/office/word/2012/wordml",
         "http://schemas.microsoft.com/office/word/2010/11/wordml",
         "http://schemas.microsoft.com/office/drawing/2010/main", "http://schemas.microsoft.com/office/drawing/2014/chartex",
         *("http://schemas.microsoft.com/office/word/2010/wordprocessing" + name
           for name in ("Shape", "Group", "Canvas", "Ink", "Drawing"))}
STORIES = {"hdr": "headers", "ftr": "footers", "footnote": "footnotes", "endnote": "endnotes", "comment": "comments",
           "txbxContent": "boxes"}
BETWEEN = {"sdt", "sdtContent", "customXml", "ins", "del", "moveFrom", "moveTo"}
AMID = BETWEEN | {"hyperlink", "smartTag", "dir", "bdo"}
SIGNS = {"tab": "\t", "ptab": "\t", "cr": "\v", "noBreakHyphen": "\x1e", "softHyphen": "\x1f", "footnoteReference": "\x02",
         "endnoteReference": "\x02", "drawing": "\x01", "pict": "\x01", "object": "\x01"}


def name_of(element):
    """The local name of an element of Word's or of alternatives; "" of others."""
    if not isinstance(element.tag, str):
        return ""
    tag = etree.QName(element)
    if tag.namespace in WORD:
        return tag.localname
    if tag.namespace == "http://schemas.openxmlformats.org/markup-compatibility/2006":
        return tag.localname
    if tag.namespace and tag.namespace.endswith("/math") and tag.localname in ("oMath", "oMathPara"):
        return tag.localname
    return ""


def value(element, name):
    return next((v for k, v in element.attrib.items() if k == name or any(k == "{%s}%s" % (w, name) for w in WORD)), "")


class Story:
    """What one story shows where results of fields show."""

    def __init__(self, container):
        self.out = []
        self.fields = []
        self.plain = True
        self.blocks(container)
        self.text = "".join(self.out)

    def put(self, text):
        if "code" not in self.fields:
            self.out.append(text)

    def chosen(self, element):
        for child in element:
            name = name_of(child)
            spaces = [child.nsmap.get(p) for p in child.get("Requires", "").split()]
            if name == "Fallback" or (name == "Choice" and spaces and all(s in KNOWN for s in spaces)):
                return child
        return ()

    def blocks(self, parent, within="blocks"):
        last = None
        for child in parent:
            name = name_of(child)
            if name in BETWEEN:
                last = self.blocks(child, within) or last
            elif name == "AlternateContent":
                last = self.blocks(self.chosen(child), within) or last
            elif within == "blocks" and name == "p":
                self.runs(child)
                self.put("\r")
                last = name
            elif within == "blocks" and name == "tbl":
                self.blocks(child, "table")
                last = name
            elif within == "table" and name == "tr":
                self.blocks(child, "row")
                self.put("\a")
            elif within == "row" and name == "tc":
                # Its last mark is the cell's.
                if self.blocks(child) == "p" and self.out and self.out[-1] == "\r":
                    self.out[-1] = "\a"
                else:
                    self.put("\a")
        return last

    def runs(self, parent):
        for child in parent:
            name = name_of(child)
            if name in AMID:
                self.runs(child)
            elif name == "AlternateContent":
                self.runs(self.chosen(child))
            elif name == "fldSimple":
                self.runs(child)
            elif name in ("oMath", "oMathPara"):
                self.put("\x01")
            elif name == "r":
                self.run(child)

    def run(self, run):
        properties = next((c for c in run if name_of(c) == "rPr"), ())
        if any(name_of(p) == "vanish" and value(p, "val") not in ("0", "false", "off") for p in properties):
            self.plain = False
        for child in run:
            name = name_of(child)
            if name in ("t", "delText"):
                text = re.sub("[\r\n]", " ", "".join(child.itertext()))
                space = next((a.get("{http://www.w3.org/XML/1998/namespace}space") for a in (child, *child.iterancestors())
                              if a.get("{http://www.w3.org/XML/1998/namespace}space")), "")
                self.put(text if space == "preserve" else text.strip(" \t"))
            elif name == "fldChar":
                kind = value(child, "fldCharType")
                if kind == "begin":
                    self.fields.append("code")
                elif kind == "separate" and self.fields:
                    self.fields[-1] = "result"
                elif kind == "end" and self.fields:
                    self.fields.pop()
            elif name == "br":
                self.put({"page": "\f", "column": "\x0e"}.get(value(child, "type"), "\v"))
            elif name == "sym":
                self.put(chr(int(value(child, "char") or "28", 16)))
            elif name == "AlternateContent":
                for inner in self.chosen(child):
                    kind = name_of(inner)
                    self.put("".join(inner.itertext()) if kind == "t" else SIGNS.get(kind, ""))
            elif name == "ruby":
                self.plain = False
            elif name in SIGNS:
                self.put(SIGNS[name])


class Document:
    """Main text, and the stories by kind."""

    def __init__(self, path):
        self.archive = zipfile.ZipFile(path)
        self.stories = {}
        self.plain = True
        self.seen = set()
        main = self.targets("")["officeDocument"][0]
        root = self.tree(main)
        body = next(e for e in root.iter() if name_of(e) == "body")
        story = Story(body)
        self.main = story.text
        self.plain &= story.plain
        self.gather(root)
        for kind, parts in self.targets(main).items():
            if kind in ("header", "footer", "footnotes", "endnotes", "comments"):
                for part in parts:
                    self.gather(self.tree(part))
            if kind == "styles":
                self.plain &= b"vanish" not in self.archive.read(self.member(parts[0]))

    def member(self, name):
        return next(n for n in self.archive.namelist() if n.lower() == name.lower())

    def tree(self, name):
        member = self.member(name)
        if member in self.seen:
            return etree.Element("none")
        self.seen.add(member)
        return etree.fromstring(self.archive.read(member), etree.XMLParser(huge_tree=True, resolve_entities=False))

    def targets(self, part):
        folder, base = posixpath.split(part)
        found = {}
        try:
            rels = etree.fromstring(self.archive.read(posixpath.join(folder, "_rels", base + ".rels")))
        except KeyError:
            return found
        for relation in rels:
            if not isinstance(relation.tag, str) or relation.get("TargetMode") == "External":
                continue
            target = posixpath.normpath(posixpath.join("/" + folder, relation.get("Target"))).lstrip("/")
            if any(n.lower() == target.lower() for n in self.archive.namelist()):
                found.setdefault(relation.get("Type").rsplit("/", 1)[-1], []).append(target)
        return found

    def gather(self, root):
        twins = {}
        for element in root.iter():
            kind = STORIES.get(name_of(element))
            if kind is None:
                continue
            story = Story(element)
            self.plain &= story.plain
            # A box stands in one alternative, and again in another.
            around = [a for a in element.iterancestors() if name_of(a) in ("Choice", "Fallback")]
            outer = [a.getparent() for a in around]
            key = re.sub("[\x01\x08]", "", story.text).rstrip("\r")
            if kind == "boxes" and any(key in twins.get(o, {}) and twins[o][key] is not a for o, a in zip(outer, around)):
                continue
            for o, a in zip(outer, around):
                twins.setdefault(o, {}).setdefault(key, a)
            self.stories.setdefault(kind, []).append(story.text)


def folded(text):
    """Units of one case each, so that positions stay."""
    return "".join(c.lower() if len(c.lower()) == 1 else c for c in text)


def occurrences(text, wanted, case, words):
    if not case:
        text, wanted = folded(text), folded(wanted)
    count, at = 0, text.find(wanted)
    while at >= 0:
        end = at + len(wanted)
        beside = (text[at - 1:at], text[end:end + 1])
        if words and any(c and unicodedata.category(c)[0] in "LNM" for c in beside):
            at = text.find(wanted, at + 1)
            continue
        count, at = count + 1, text.find(wanted, end)
    return count


def told(path, begin, case, words):
    flags = [*(["--match-case"] if case else []), *(["--whole-words"] if words else [])]
    run = subprocess.run([PLUVO, "find", "--json", *flags, "--begin=" + begin, str(path)], capture_output=True, check=False)
    result = {}
    for line in run.stdout.decode("utf-8", "surrogatepass").splitlines():
        record = json.loads(line)
        if "file" in record:
            result.update(record.get("elsewhere", {}))
            result.update(record.get("unreached", {}))
    return result


def documents(folder):
    for path in sorted(Path(folder).rglob("*")):
        if path.suffix.lower() not in (".docx", ".docm", ".dotx") or not zipfile.is_zipfile(path):
            continue
        try:
            yield path, Document(path)
        except (zipfile.BadZipFile, NotImplementedError, RuntimeError, StopIteration, KeyError, IndexError, etree.XMLSyntaxError, UnicodeDecodeError):
            continue


def check_words(folder):
    checked, missed, held = 0, 0, 0
    for path, document in documents(folder):
        main = folded(document.main)
        wanted = {}
        for kind, texts in document.stories.items():
            for text in texts:
                for word in re.findall(r"[^\W_]{3,}", text):
                    if folded(word) not in main:
                        wanted.setdefault(word, set()).add(kind)
        held += bool(wanted)
        for word, kinds in sorted(wanted.items()):
            found = told(path, word, True, False)
            checked += 1
            beside = {"hidden", "fieldCodes", "fieldResults", "computed"} & found.keys()
            if not beside and not kinds <= found.keys():
                missed += 1
                print(f"{path}: {word!r} in {', '.join(sorted(kinds))}, told {found}")
    print(f"{held} documents, {checked} words, {missed} not told")
    return missed


def check_random(folder, count):
    rng = random.Random(1)
    judged = [(p, d) for p, d in documents(folder) if d.plain and any("".join(t).strip() for t in d.stories.values())]
    wrong = 0
    for _ in range(count):
        path, document = rng.choice(judged)
        text = rng.choice([t for texts in document.stories.values() for t in texts] + [document.main])
        pieces = [p for p in re.split("[\x00-\x1f]", text) if len(p) > 3]
        if not pieces:
            continue
        piece = rng.choice(pieces)
        at = rng.randrange(len(piece) - 2)
        begin = piece[at:at + rng.randrange(2, 12)]
        case, words = rng.random() < 0.5, rng.random() < 0.5
        if words:
            begin = begin.strip()
        if not begin.strip() or begin[0] in "\u0300":
            continue
        right = {k: sum(occurrences(t, begin, case, words) for t in texts) for k, texts in document.stories.items()}
        right = {k: n for k, n in right.items() if n}
        found = {k: n for k, n in told(path, begin, case, words).items() if k in STORIES.values()}
        if right != found:
            wrong += 1
            print(f"{path}: {begin!r} case={case} words={words}: told {found}, right {right}")
    print(f"{count} requests over {len(judged)} documents, {wrong} wrong")
    return wrong


def main():
    if len(sys.argv) not in (3, 4) or sys.argv[1] not in ("words", "random"):
        sys.exit(__doc__)
    if sys.argv[1] == "words":
        sys.exit(check_words(sys.argv[2]) != 0)
    sys.exit(check_random(sys.argv[2], int(sys.argv[3]) if len(sys.argv) == 4 else 1000) != 0)


if __name__ == "__main__":
    main()
