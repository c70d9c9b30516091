#!/usr/bin/env python3
"""How often the encoding of a short text is told rightly, wrongly, or not at all.

    python3 bench/encodings.py [build/release/bin/pluvo]

writes texts in many languages and encodings into a folder of its own, and has PLUVO open them. It compares the text
that the named encoding makes of each with the text written.
"""

import collections
import json
import random
import subprocess
import sys
import tempfile
from pathlib import Path

from sentences import TEXTS

ROOT = Path(__file__).resolve().parent.parent
LENGTHS = (20, 60, 200, 600, 2000)
EACH = 40
# Where Python's name for what PLUVO reads is another.
PYTHON = {"Windows-874": "cp874", "Shift_JIS": "cp932", "EUC-KR": "cp949", "macintosh": "mac_roman", "IBM866": "cp866"}
ENGLISH = [sentence for sentence in TEXTS["English"][1].split("\n") if sentence.isascii()]


def cut_to(sentences, encoding, length, dice):
    text = ""
    while len(text.encode(encoding)) < length:
        text += dice.choice(sentences) + dice.choice(" \n")
    while len(text.encode(encoding)) > length:
        text = text[:-1]
    return text


def within_english(piece, dice):
    around = [dice.choice(ENGLISH) for _ in range(6)]
    return " ".join([*around[:3], piece, *around[3:]])


def words(sentences):
    return [word for sentence in sentences for word in sentence.split() if not word.isascii()]


def texts(dice):
    """(what it is, encoding, text)"""
    for language, (encodings, all_sentences) in TEXTS.items():
        sentences = all_sentences.split("\n")
        for encoding in encodings:
            for length in LENGTHS:
                for _ in range(EACH):
                    yield f"{length} bytes", language, encoding, cut_to(sentences, encoding, length, dice)
            if language == "English":
                continue
            for _ in range(EACH):
                yield "a sentence in English", language, encoding, within_english(dice.choice(sentences), dice)
                yield "a word in English", language, encoding, within_english(dice.choice(words(sentences)), dice)
                letter = dice.choice([c for c in dice.choice(words(sentences)) if not c.isascii()])
                yield "a letter in English", language, encoding, within_english(f"the letter {letter}", dice)


def told(program, folder):
    lines = subprocess.run([program, "find", "--json", "--begin", "zzzz", "-r", folder], capture_output=True, check=False)
    answers = {}
    for line in lines.stdout.splitlines():
        answer = json.loads(line)
        if "file" in answer:
            error = answer["error"] and answer["error"]["code"]
            answers[Path(answer["file"]).name] = (answer["encoding"], error)
    return answers


def verdict(text, data, answer):
    name, error = answer
    if error == "encoding":
        return "refused"
    assert not error, error
    return "right" if data.decode(PYTHON.get(name, name)) == text else "wrong"


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/release/bin/pluvo")
    dice = random.Random(7)
    everything = [each for each in texts(dice) if not each[3].isascii()]
    with tempfile.TemporaryDirectory() as folder:
        for number, (_, _, encoding, text) in enumerate(everything):
            (Path(folder) / f"{number:05}.txt").write_bytes(text.encode(encoding))
        answers = told(program, folder)
    by_kind = collections.defaultdict(collections.Counter)
    by_encoding = collections.defaultdict(collections.Counter)
    for number, (kind, language, encoding, text) in enumerate(everything):
        answer = answers[f"{number:05}.txt"]
        said = verdict(text, text.encode(encoding), answer)
        by_kind[kind][said] += 1
        by_encoding[(language, encoding)][said] += 1
        if "-v" in sys.argv and said != "right":
            print(kind, language, encoding, said, answer[0], repr(text if len(text) < 300 else text[:300]))
    for title, counts in (("text", by_kind), ("language, encoding", by_encoding)):
        print(f"\n| {title} | texts | right | refused | wrong |\n|---|---|---|---|---|")
        for key, count in counts.items():
            total = sum(count.values())
            name = key if isinstance(key, str) else ", ".join(key)
            print(f"| {name} | {total} |", " | ".join(f"{100 * count[said] / total:.1f} %"
                                                   for said in ("right", "refused", "wrong")), "|")


if __name__ == "__main__":
    main()
