#!/usr/bin/env python3
"""What documents made to do harm cost at the most: each at one size and at double that size.

    bounds.py [--write] [--only WORD] [--repeat N]

Tells processor time (the median of N runs, at first three) and peak memory of the whole process. Tells the end, too: the
number of blocks changed, or the code of the failure. Double the size may take 2.7 times the time. --write puts the table into
docs/bounds.md. Documents lie in a temporary folder, a few hundred megabytes.
"""

import argparse
import base64
import json
import multiprocessing
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PLUVO = ROOT / "build/release/bin/pluvo"
W = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
MOST = 2.7
TINY = 0.05  # seconds, in which start-up and chance count

REPLACE = ["replace", "-b", "ab", "-t", "cd"]
DELETE = ["delete", "-b", "ab"]
HIGHLIGHT = ["highlight", "-b", "ab"]


def paragraph(content, properties=""):
    return f"<w:p>{properties}{content}</w:p>"


def run(text):
    return f'<w:r><w:t xml:space="preserve">{text}</w:t></w:r>'


def docx(body, head="", settings="", members=0, blanks=0):
    """A package; the body is given in pieces, of which there may be many."""
    def write(path):
        types = "application/vnd.openxmlformats-officedocument.wordprocessingml"
        office = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
        package = "http://schemas.openxmlformats.org/package/2006"
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as archive:
            archive.writestr("[Content_Types].xml",
                             f'<Types xmlns="{package}/content-types"><Default Extension="rels" ContentType='
                             f'"application/vnd.openxmlformats-package.relationships+xml"/>'
                             f'<Override PartName="/word/document.xml" ContentType="{types}.document.main+xml"/>'
                             f'<Override PartName="/word/settings.xml" ContentType="{types}.settings+xml"/></Types>')
            archive.writestr("_rels/.rels", f'<Relationships xmlns="{package}/relationships"><Relationship Id="r" '
                             f'Type="{office}/officeDocument" Target="word/document.xml"/></Relationships>')
            archive.writestr("word/_rels/document.xml.rels", f'<Relationships xmlns="{package}/relationships">'
                             f'<Relationship Id="s" Type="{office}/settings" Target="settings.xml"/></Relationships>')
            archive.writestr("word/settings.xml", f'<w:settings xmlns:w="{W}">{settings}</w:settings>')
            with archive.open("word/document.xml", "w", force_zip64=True) as part:
                part.write(f'<w:document xmlns:w="{W}"{head}><w:body>'.encode())
                part.write(b" " * blanks)
                for piece in body:
                    part.write(piece.encode())
                part.write(b"<w:sectPr/></w:body></w:document>")
            for number in range(members):
                archive.writestr(f"customXml/item{number}.xml", "<a/>")
    return write


def text(piece, times, last=b"\n"):
    def write(path):
        with open(path, "wb") as file:
            for _ in range(times // 1000):
                file.write(piece * 1000)
            file.write(last)
    return write


def field(number):
    return ('<w:r><w:fldChar w:fldCharType="begin"/></w:r><w:r><w:instrText> REF a%d </w:instrText></w:r>'
            '<w:r><w:fldChar w:fldCharType="separate"/></w:r>%s<w:r><w:fldChar w:fldCharType="end"/></w:r>'
            % (number, run("ab")))


def nested_table(depth):
    yield "<w:tbl><w:tr><w:tc>" * depth
    yield paragraph(run("ab"))
    yield ("</w:tc></w:tr></w:tbl>" + paragraph("")) * depth


def many(piece, times, around=("", "")):
    yield around[0]
    for _ in range(times // 100):
        yield piece * 100
    yield around[1]


def locked(turns):
    kept = base64.b64encode(b"x" * 64).decode()
    return (f'<w:documentProtection w:edit="readOnly" w:algorithmName="SHA-512" w:spinCount="{turns}" '
            f'w:saltValue="{kept}" w:hashValue="{kept}"/>')


def bookmark(number):
    return (f'<w:bookmarkStart w:id="{number}" w:name="b{number}"/>{run("ab")}<w:bookmarkEnd w:id="{number}"/>{run(" x ")}')


def cases():
    """Name, size, the document of a size, the command."""
    p = ("<w:p>", "</w:p>")
    one = ("<w:p><w:r><w:t>", "</w:t></w:r></w:p>")
    yield ".docx, one text of many blocks", 1_000_000, lambda n: docx(many("ab x ", n, one)), REPLACE
    yield ".docx, many runs", 300_000, lambda n: docx(many(run("ab"), n, p)), REPLACE
    yield ".docx, many paragraphs", 200_000, lambda n: docx(many(paragraph(run("ab")), n)), REPLACE
    yield ".docx, paragraphs run together", 100_000, lambda n: docx(many(paragraph(run("ab")), n)), ["delete", "-b", "ab\n"]
    yield ".docx, many highlights", 300_000, lambda n: docx(many("ab x ", n, one)), HIGHLIGHT
    yield ".docx, large table", 100_000, lambda n: docx(
        many(f"<w:tr><w:tc>{paragraph(run('ab'))}</w:tc></w:tr>", n, ("<w:tbl>", "</w:tbl>" + paragraph("")))), REPLACE
    yield ".docx, tables within tables", 300, lambda n: docx(nested_table(n)), REPLACE
    yield ".docx, many fields", 50_000, lambda n: docx([p[0], *map(field, range(n)), p[1]]), REPLACE
    yield ".docx, fields within fields", 450, lambda n: docx(
        [p[0], '<w:r><w:fldChar w:fldCharType="begin"/></w:r>' * n, run("ab"),
         '<w:r><w:fldChar w:fldCharType="end"/></w:r>' * n, p[1]]), REPLACE
    yield ".docx, many bookmarks", 50_000, lambda n: docx([p[0], *map(bookmark, range(n)), p[1]]), DELETE
    yield ".docx, many tracked deletions", 100_000, lambda n: docx(
        many(f'<w:del w:id="1"><w:r><w:delText>ab</w:delText></w:r></w:del>{run("ab")}', n, p)), REPLACE
    yield ".docx, elements within elements", 1_000, lambda n: docx(
        [p[0], "<w:smartTag>" * n, run("ab"), "</w:smartTag>" * n, p[1]]), REPLACE
    yield ".docx, paragraphs of 1,000 attributes", 500, lambda n: docx(
        many("<w:p " + " ".join(f'a{i}="{i}"' for i in range(1000)) + ">" + run("ab") + p[1], n)), REPLACE
    yield ".docx, paragraphs of 1,000 namespaces", 500, lambda n: docx(
        many("<w:p" + "".join(f' xmlns:n{i}="urn:{i}"' for i in range(1000)) + ">" + run("ab") + p[1], n)), REPLACE
    yield ".docx, more namespaces than an element may have", 20_000, lambda n: docx(
        [paragraph(run("ab"))], head="".join(f' xmlns:n{i}="urn:{i}"' for i in range(n))), REPLACE
    yield ".docx, a long name", 8_000_000, lambda n: docx([f"<{'n' * n}/>", paragraph(run("ab"))]), REPLACE
    yield ".docx, many references", 1_000_000, lambda n: docx(many("&amp;&#x41;ab ", n, one)), REPLACE
    yield ".docx, blanks within the ratio", 15_000_000, lambda n: docx([paragraph(run("ab"))], blanks=n), REPLACE
    yield ".docx, many members", 4_000, lambda n: docx([paragraph(run("ab"))], members=n), REPLACE
    yield ".docx, a password of many turns", 500_000, lambda n: docx(
        [paragraph(run("ab"))], settings=locked(n)), [*REPLACE, "--password-file", "PASSWORDS"]
    yield ".docx, a password of more turns still", 5_000_000, lambda n: docx(
        [paragraph(run("ab"))], settings=locked(n)), [*REPLACE, "--password-file", "PASSWORDS"]
    yield ".txt, one line of many blocks", 3_000_000, lambda n: text(b"ab x ", n), REPLACE
    yield ".txt, every character a block", 2_000_000, lambda n: text(b"a", n), ["replace", "-b", "a", "-t", "b"]
    yield ".txt, beginnings without an ending", 500_000, lambda n: text(b"ab x ", n), [
        "replace", "-b", "ab", "-e", "nowhere", "--unit", "document", "-t", "cd"]
    yield ".txt, encodings in turns", 500_000, lambda n: text("ab \u20ac ".encode() + b"ab \x80 ", n), REPLACE
    yield ".txt, UTF-16 of pairs", 500_000, lambda n: text(
        "ab \U0001F600 ".encode("utf-16-le"), n, "\ufeff".encode("utf-16-le")), REPLACE
    yield ".txt, a long text to look for", 50_000, lambda n: text(b"ab " * 10, n), ["replace", "-b", "@LONG", "-t", "cd"]


def measure(words, source, folder, repeat):
    document = folder / ("document" + source.suffix)
    times, memory, ended = [], 0, ""
    for _ in range(repeat):
        shutil.copyfile(source, document)
        environment = dict(os.environ, XDG_STATE_HOME=str(folder / "state"))
        process = subprocess.Popen([PLUVO, *words, "--no-journal", "--json", document], stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, env=environment)
        lines = process.stdout.read().splitlines()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = status
        times.append(usage.ru_utime + usage.ru_stime)
        memory = max(memory, usage.ru_maxrss)
        ended = how(lines, status)
    return statistics.median(times), memory / 1024, ended


def how(lines, status):
    if os.WIFSIGNALED(status):
        return f"**signal {os.WTERMSIG(status)}**"
    for line in map(json.loads, lines):
        if line.get("error"):
            return line["error"]["code"]
        if "path" in line or "file" in line:
            return f"{line.get('operated', line.get('found'))} changed"
    return f"status {os.waitstatus_to_exitcode(status)}"


def generated(make, size, path):
    """In a process of its own: a program started by a large process is counted as that large."""
    making = multiprocessing.get_context("fork").Process(target=lambda: make(size)(path))
    making.start()
    making.join()
    if making.exitcode != 0:
        sys.exit(f"{path}: could not be made")


def table(only, repeat):
    lines, good = [], True

    def tell(line):
        lines.append(line)
        print(line, flush=True)

    tell("| document | size | time | memory | ended | double | time | memory | ended | growth |")
    tell("|---|---|---|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as scratch:
        folder = Path(scratch)
        passwords = folder / "passwords"
        passwords.write_text("guess\nanother\n")
        passwords.chmod(0o600)
        for name, size, make, words in cases():
            if only not in name:
                continue
            row, times = [], []
            for n in (size, 2 * size):
                source = folder / ("source." + name[1:name.index(",")])
                generated(make, n, source)
                long = folder / "long"
                given = {"PASSWORDS": [str(passwords)], "@LONG": []}
                call = [each for word in words for each in given.get(word, [word])]
                if "@LONG" in words:
                    long.write_bytes(b"ab " * (n // 4) + b"x")
                    call = ["replace", "--begin-file", str(long), "-t", "cd"]
                time, memory, ended = measure(call, source, folder, repeat)
                times.append(time)
                row += [f"{n:,}", f"{time:.2f} s", f"{memory:.0f} MB", ended]
                source.unlink()
            growth = times[1] / max(times[0], 0.001)
            holds = growth <= MOST or times[1] < TINY
            good &= holds and not any("signal" in cell for cell in row)
            tell(f"| {name} | {' | '.join(row)} | {growth:.1f}{'' if holds else ' **more**'} |")
    return lines, good


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--write", action="store_true")
    parser.add_argument("--only", default="")
    parser.add_argument("--repeat", type=int, default=3)
    options = parser.parse_args()
    lines, good = table(options.only, options.repeat)
    if options.write:
        page = ROOT / "docs/bounds.md"
        before, rest = page.read_text().split("<!-- table -->\n")
        _, after = rest.split("<!-- end -->")
        page.write_text(before + "<!-- table -->\n" + "\n".join(lines) + "\n<!-- end -->" + after)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
