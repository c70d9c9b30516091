#!/usr/bin/env python3
"""Makes random requests with a built pluvo, and compares the documents with a model of a few lines.

    scripts/random_requests.py build/release/bin/pluvo --count 10000 --seed 1

Each request works on one text and on one .docx with the same text in runs of any length. Compared are counts, the exit
status and all bytes of the text. Of the .docx it is the text, the highlight, and the bytes of other members. The
model knows none of the program's code: it follows what README.md and text/units.h say, character by character.
"""

import argparse
import json
import os
import random
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as tree
import zipfile
from pathlib import Path
from xml.sax.saxutils import escape

LETTERS = "abAéÉж"
OTHERS = ".' \n\v\U0001F600"
NAMESPACE = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
W = "{" + NAMESPACE + "}"
SCHEMAS = "http://schemas.openxmlformats.org/"
RELATIONSHIPS = SCHEMAS + "officeDocument/2006/relationships"
PACKAGE = {
    "[Content_Types].xml": f'<Types xmlns="{SCHEMAS}package/2006/content-types"><Default Extension="rels" ContentType='
                           '"application/vnd.openxmlformats-package.relationships+xml"/><Override PartName='
                           '"/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.'
                           'wordprocessingml.document.main+xml"/></Types>',
    "_rels/.rels": f'<Relationships xmlns="{SCHEMAS}package/2006/relationships"><Relationship Id="r" Type="'
                   f'{RELATIONSHIPS}/officeDocument" Target="word/document.xml"/></Relationships>',
    "other.bin": "kept as it is",
}


# Units: where each begins. A document's text ends with its last paragraph mark.

def paragraph_starts(text):
    return [0] + [i + 1 for i, c in enumerate(text[:-1]) if c == "\n"]


def word_starts(text):
    one = rf"[{LETTERS}z]+(?:'[{LETTERS}z]+)* *|\n|\v *|[^{LETTERS}z \n\v]+ *| +"
    return [found.start() for found in re.finditer(one, text)]


def sentence_starts(text):
    starts, after = [], "mark"
    for i, c in enumerate(text):
        if after == "mark" or (after == "blanks" and c not in " \v.\n"):
            starts.append(i)
            after = ""
        if c == "\n":
            after = "mark"
        elif c == ".":
            after = "stop"
        elif after and c in " \v":
            after = "blanks"
        elif not (after == "stop" and c == "'"):
            after = ""
    return starts


STARTS = {"word": word_starts, "sentence": sentence_starts, "paragraph": paragraph_starts}


def touched(starts, place):
    return 1 + sum(place[0] < start < place[1] for start in starts)


# The pass.

class Model:
    def __init__(self, text, asked):
        self.text, self.asked = text + "z\n", asked  # a tail that no request names
        self.found = self.operated = 0
        self.marked = set()

    def find(self, wanted, start, end):
        def comparable(text):
            text = text.replace("\v", "\n")
            return text if self.asked["match_case"] else text.lower()
        for at in range(start, end - len(wanted) + 1):
            place = at, at + len(wanted)
            if comparable(self.text[at:place[1]]) == comparable(wanted) and self.stands_free(wanted, place):
                return place
        return None

    def stands_free(self, wanted, place):
        def is_letter(at):
            return 0 <= at < len(self.text) and self.text[at] in LETTERS + "z"
        return not self.asked["whole_words"] or ((wanted[0] == "\n" or not is_letter(place[0] - 1)) and
                                                 (wanted[-1] == "\n" or not is_letter(place[1])))

    def work(self):
        asked, start = self.asked, 0
        while begin := self.find(asked["begin"], start, len(self.text)):
            places = {"block": begin, "begin": begin}
            if asked["end"]:
                end = self.find(asked["end"], begin[1], len(self.text))
                if not end:
                    break
                places |= {"end": end, "block": (begin[0], end[1])}
                if self.too_far(places):
                    start = begin[1]
                    continue
                if asked["inside"]:
                    places["inside"] = self.find(asked["inside"], begin[1], end[0])
                    if not places["inside"]:
                        start = end[1]
                        continue
            self.found += 1
            start = self.operate(places[asked["on"]], places["block"][1])
        return self

    def too_far(self, places):
        if self.asked["unit"] == "document":
            return False
        starts = STARTS[self.asked["unit"]](self.text)
        between = touched(starts, places["block"]) - touched(starts, places["begin"]) - touched(starts, places["end"])
        return between > self.asked["apart"]

    def operate(self, on, block_end):
        """Where the search goes on: after the block, and after what was put there."""
        command, text = self.asked["command"], self.asked["text"]
        if command == "find":
            return block_end
        self.operated += 1
        if command == "highlight":
            self.marked |= set(range(*on))
            return block_end
        if command == "insert":
            text = " " * self.asked["extra_space"] + text if self.asked["after"] else text + " " * self.asked["extra_space"]
            on = (on[1], on[1]) if self.asked["after"] else (on[0], on[0])
        elif command == "delete":
            text = ""
        self.text = self.text[:on[0]] + text + self.text[on[1]:]
        return block_end + len(text) - (on[1] - on[0])


# Requests, and documents.

def any_text(dice, letters, least, most):
    return "".join(dice.choice(letters) for _ in range(dice.randint(least, most)))


def sought(dice, text, most):
    """Most stand in the text. None is line ends alone, since the document's last mark is one."""
    at = dice.randint(0, len(text))
    piece = text[at:at + dice.randint(1, most)].replace("\v", "\n")
    return piece if piece.strip("\n") and dice.random() < 0.8 else any_text(dice, "aabbAé", 1, most)


def random_request(dice, text):
    asked = {"command": dice.choice(["find", "insert", "replace", "delete", "highlight"]), "begin": sought(dice, text, 3),
             "end": sought(dice, text, 2) if dice.random() < 0.75 else "", "unit": dice.choice([*STARTS, "document"]),
             "apart": dice.choice([0, 0, 1, 2, 3]), "match_case": dice.random() < 0.5,
             "whole_words": dice.random() < 0.25, "extra_space": dice.random() < 0.3, "after": dice.random() < 0.5}
    asked["inside"] = sought(dice, text, 2) if asked["end"] and dice.random() < 0.3 else ""
    asked["on"] = dice.choice(["block", "begin"] + ["end"] * bool(asked["end"]) + ["inside"] * bool(asked["inside"]))
    asked["text"] = dice.choice([asked["begin"] + asked["inside"] + asked["end"],
                                 any_text(dice, LETTERS + OTHERS.replace("\v", ""), 0, 3)])
    return asked


def command_line(asked):
    command = asked["command"]
    line = [command, "--begin=" + asked["begin"]]
    if asked["end"]:
        line += ["--end=" + asked["end"], "--unit=" + asked["unit"]]
        if asked["unit"] != "document":
            line.append(f"--apart={asked['apart']}")
    if asked["inside"]:
        line.append("--inside=" + asked["inside"])
    line += ["--on=" + asked["on"]] + ["--match-case"] * asked["match_case"] + ["--whole-words"] * asked["whole_words"]
    line += ["--no-journal"] * (command != "find")
    if command in ("insert", "replace"):
        line.append("--text=" + asked["text"])
    if command == "insert":
        line += ["--after"] * asked["after"] + ["--extra-space"] * asked["extra_space"]
    return line


def write_docx(dice, path, text):
    body = ""
    for paragraph in text.split("\n"):
        runs = ""
        while paragraph:
            length = dice.randint(1, 6)
            piece, paragraph = paragraph[:length], paragraph[length:]
            look = dice.choice(["", "", "<w:rPr><w:b/></w:rPr>", '<w:rPr><w:color w:val="FF0000"/></w:rPr>'])
            runs += "<w:r>" + look + "<w:br/>".join(f'<w:t xml:space="preserve">{escape(part)}</w:t>' if part else ""
                                                    for part in piece.split("\v")) + "</w:r>"
        body += f"<w:p>{runs}</w:p>" if runs else "<w:p/>"
    with zipfile.ZipFile(path, "w") as package:
        for name, content in PACKAGE.items():
            package.writestr(name, content)
        package.writestr("word/document.xml", f'<w:document xmlns:w="{NAMESPACE}"><w:body>{body}</w:body></w:document>')


def read_docx(path):
    """Its text and which of its characters are highlighted, but for paragraph marks."""
    with zipfile.ZipFile(path) as package:
        for name, content in PACKAGE.items():
            assert package.read(name).decode() == content, name
        root = tree.fromstring(package.read("word/document.xml"))
    text, marked = "", set()
    for paragraph in root.iter(W + "p"):
        for run in paragraph.iter(W + "r"):
            piece = ""
            for child in run:
                if child.tag == W + "t":
                    kept = child.get("{http://www.w3.org/XML/1998/namespace}space") == "preserve"
                    piece += (child.text or "") if kept else (child.text or "").strip(" \t\r\n")
                elif child.tag == W + "br":
                    piece += "\v"
            if run.find(f"{W}rPr/{W}highlight") is not None:
                marked |= set(range(len(text), len(text) + len(piece)))
            text += piece
        text += "\n"
    return text, marked


def one(dice, program, folder):
    """Whether a random request has found anything; what differs is told by an AssertionError."""
    text = any_text(dice, "aaabbbA" + LETTERS + OTHERS * 2, 0, 90)
    asked = random_request(dice, text)
    model = Model(text, asked).work()
    plain, rich = folder / "a.txt", folder / "b.docx"
    line_end = dice.choice(["\n", "\r\n"]) if "\n" in text else "\n"
    as_file = (text + "z").replace("\n", line_end).encode()
    plain.write_bytes(as_file)
    write_docx(dice, rich, text + "z")
    line = command_line(asked)
    run = subprocess.run([program, *line, "--json", plain, rich], capture_output=True, text=True,
                         check=False, env={**os.environ, "XDG_STATE_HOME": str(folder)})
    told = {entry["file"]: entry for entry in map(json.loads, run.stdout.splitlines()) if "file" in entry}

    def same(what, got, wanted):
        assert got == wanted, f"{line}\n{text!r}\n{what}: {got!r}, must be {wanted!r}\n{run.stderr}"
    same("documents", len(told), 2)
    counts = model.found, model.operated
    unmarkable = asked["command"] == "highlight"
    refused = unmarkable and model.found > 0
    if not unmarkable:
        same("counts in .txt", (told[str(plain)]["found"], told[str(plain)]["operated"]), counts)
    same("counts in .docx", (told[str(rich)]["found"], told[str(rich)]["operated"]), counts)
    same("status", run.returncode, 2 if refused else 0 if model.found else 1)
    same(".txt", plain.read_bytes(), model.text[:-1].replace("\n", line_end).encode())
    read, marked = read_docx(rich)
    same(".docx", read, model.text)
    same("highlight", sorted(marked), sorted(at for at in model.marked if model.text[at] != "\n"))
    return model.found > 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=Path, help="the built pluvo")
    parser.add_argument("--count", type=int, default=1000, help="how many requests")
    parser.add_argument("--seed", type=int, default=1, help="of the first; each has the next")
    given = parser.parse_args()
    met = 0
    with tempfile.TemporaryDirectory() as folder:
        for seed in range(given.seed, given.seed + given.count):
            try:
                met += one(random.Random(seed), given.program.resolve(), Path(folder))
            except AssertionError as difference:
                sys.exit(f"seed {seed}: {difference}")
    print(f"{given.count} requests, {met} of which found blocks: no difference")


if __name__ == "__main__":
    main()
