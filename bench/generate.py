#!/usr/bin/env python3
"""Writes the documents the benchmarks run over, the same bytes every time.

    generate.py FOLDER [WORD]

With a word only the documents whose names hold it. A block begins with "the Lessor" and ends with "the Lessee". The filler holds neither, nor any word of them, so that
the blocks found are exactly those planted. A fifth of the texts searched for are cut by a run border, and a quarter
of the blocks end in a later paragraph.
"""

import os
import random
import subprocess
import sys
import tempfile
import zipfile

from generate_rtf import write_rtf

BEGIN, END = "the Lessor", "the Lessee"
WORDS = (
    "agreement premises tenant clause notice rent deposit term building garden cellar window door street number "
    "payment month quarter year annual insurance repair damage heating water supply account bank transfer date "
    "signature witness copy original register court district party parties consent written prior shall may must "
    "within after before upon until whereas hereby thereof herein under over between with without and or of in on "
    "at by for from to as is are be been not no any all each every other such same further reasonable ordinary"
).split()
# Of Latin letters with marks, of Greek, Cyrillic, Hebrew, Arabic, Hindi, Chinese and Japanese letters, and one sign
# beyond the first 65,536 characters.
FOREIGN_WORDS = (
    "Grundstücksübergabe Mietverhältnis für Gebäude Schlüssel façade loyer résilié señal año vizinhança żółć příloha "
    "μίσθωση ακινήτου και όρος договор аренды помещение срок оплата сторона подпись חוזה שכירות דירה عقد الإيجار المؤجر "
    "किराया समझौता पक्ष 租赁合同 房屋 租金 押金 条款 当事人 賃貸借契約 建物 敷金 の について 임대차 계약 보증금 𝒜"
).split()
# What Windows-1252 holds, quotation marks and dashes among it, and what Shift_JIS holds.
WESTERN_WORDS = (
    "Grundstücksübergabe Mietverhältnis für Gebäude Schlüssel façade loyer résilié señal año vizinhança œuvre š “clause” "
    "l’immeuble 1990–2020 €"
).split()
JAPANESE_WORDS = (
    "家屋 賃料 賃貸人 賃貸借契約 建物 敷金 の について 当事者は、本契約を 解除することができる。 家賃 カタカナ ﾃｷｽﾄ 表示 ソート"
).split()
RUN_STYLES = (
    "",
    "<w:rPr><w:b/></w:rPr>",
    "<w:rPr><w:i/><w:sz w:val=\"22\"/></w:rPr>",
    "<w:rPr><w:rFonts w:ascii=\"Arial\" w:hAnsi=\"Arial\"/><w:color w:val=\"1F3864\"/></w:rPr>",
    "<w:rPr><w:u w:val=\"single\"/><w:lang w:val=\"en-GB\"/></w:rPr>",
)
W = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
R = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
DRAWING = (
    '<w:r><w:drawing><wp:inline xmlns:wp="http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing">'
    '<wp:extent cx="914400" cy="914400"/><wp:docPr id="{id}" name="Picture {id}"/>'
    '<a:graphic xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main">'
    '<a:graphicData uri="http://schemas.openxmlformats.org/drawingml/2006/picture">'
    '<pic:pic xmlns:pic="http://schemas.openxmlformats.org/drawingml/2006/picture">'
    '<pic:nvPicPr><pic:cNvPr id="{id}" name="p{id}.png"/><pic:cNvPicPr/></pic:nvPicPr>'
    '<pic:blipFill><a:blip r:embed="rIdPicture{id}"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill>'
    '<pic:spPr><a:xfrm><a:off x="0" y="0"/><a:ext cx="914400" cy="914400"/></a:xfrm>'
    '<a:prstGeom prst="rect"><a:avLst/></a:prstGeom></pic:spPr></pic:pic></a:graphicData></a:graphic>'
    "</wp:inline></w:drawing></w:r>"
)


class Filler:
    """Endless plain prose."""

    def __init__(self, rng):
        self.rng = rng

    def text(self, length):
        words, size = [], 0
        while size < length:
            word = self.rng.choice(WORDS)
            if self.rng.random() < 0.08:
                word += self.rng.choice((".", ",", ";"))
            words.append(word)
            size += len(word) + 1
        return " ".join(words) + " "


def runs_of(rng, text, run_length=46, second=""):
    """text as runs of about run_length characters: which cuts a fifth of the texts searched for; second: the
    properties of every second one."""
    parts, at = [], 0
    while at < len(text):
        length = max(4, int(rng.gauss(run_length, run_length / 4)))
        parts.append(text[at : at + length])
        at += length
    return "".join(
        '<w:r>%s<w:t xml:space="preserve">%s</w:t></w:r>' % (second if second and n % 2 else rng.choice(RUN_STYLES), part)
        for n, part in enumerate(parts)
    )


def paragraphs_with_blocks(rng, filler, characters, plan, length):
    """Paragraph texts of about length characters; plan(index, count) says how many blocks begin in each."""
    paragraphs, pending_end = [], False
    count = max(1, characters // length)
    for index in range(count):
        text = ""
        blocks = plan(index, count)
        if pending_end:
            text += filler.text(10) + END + " "
            pending_end = False
        share = max(20, (length - len(text)) // (blocks + 1) - len(BEGIN) - len(END) - 12)
        for number in range(blocks):
            text += filler.text(rng.randrange(share // 2, share + share // 2))
            text += BEGIN + " " + filler.text(rng.randrange(6, 24))
            if number == blocks - 1 and index + 1 < count and rng.random() < 0.25 * blocks:
                pending_end = True
            else:
                text += END + " "
        if len(text) < length:
            text += filler.text(length - len(text))
        paragraphs.append(text)
    return paragraphs


def every(blocks):
    """The plan of so many blocks spread evenly."""

    def plan(index, count):
        return (index + 1) * blocks // count - index * blocks // count
    return plan


def adversarial(rng, filler, characters, beginnings):
    """So many beginnings, and one ending at the end of the document."""
    count = characters // 400
    plan = every(beginnings)
    paragraphs = []
    for index in range(count):
        text = ""
        for _ in range(plan(index, count)):
            text += BEGIN + " " + filler.text(8)
        paragraphs.append(text + filler.text(max(1, 400 - len(text))))
    paragraphs[-1] += END + " "
    return paragraphs


def write_docx(path, seed, paragraphs, tables, pictures, hidden="", others=()):
    """hidden: the properties of every second run; others: (relationship, name, bytes) of other parts."""
    rng = random.Random(seed)
    filler = Filler(random.Random(seed + 1))
    body = []
    step_table = max(1, len(paragraphs) // (tables + 1)) if tables else 0
    step_picture = max(1, len(paragraphs) // (pictures + 1)) if pictures else 0
    table_left, picture = tables, 0
    for index, text in enumerate(paragraphs):
        body.append("<w:p><w:pPr><w:jc w:val=\"both\"/></w:pPr>%s" % runs_of(rng, text, second=hidden))
        if step_picture and picture < pictures and index % step_picture == step_picture - 1:
            picture += 1
            body.append(DRAWING.format(id=picture))
        body.append("</w:p>")
        if step_table and table_left and index % step_table == step_table - 1:
            # Between two blocks only: a table amid one would take its distance with it.
            if text.rfind(BEGIN.split()[1]) > text.rfind(END):
                continue
            table_left -= 1
            rows = "".join(
                "<w:tr>%s</w:tr>" % "".join(
                    '<w:tc><w:tcPr><w:tcW w:w="2000" w:type="dxa"/></w:tcPr><w:p>%s</w:p></w:tc>'
                    % runs_of(rng, filler.text(12))
                    for _ in range(4)
                )
                for _ in range(5)
            )
            body.append(
                '<w:tbl><w:tblPr><w:tblW w:w="0" w:type="auto"/></w:tblPr><w:tblGrid>'
                + '<w:gridCol w:w="2000"/>' * 4 + "</w:tblGrid>" + rows + "</w:tbl>"
            )
    document = (
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n<w:document xmlns:w="%s" xmlns:r="%s"><w:body>' % (W, R)
        + "".join(body)
        + '<w:sectPr><w:pgSz w:w="11906" w:h="16838"/></w:sectPr></w:body></w:document>'
    )
    relations = "".join(
        '<Relationship Id="rIdPicture%d" Type="%s/image" Target="media/p%d.png"/>' % (n, R, n)
        for n in range(1, pictures + 1)
    ) + "".join(
        '<Relationship Id="rIdOther%d" Type="%s/%s" Target="%s"/>' % (n, R, kind, name)
        for n, (kind, name, _) in enumerate(others)
    )
    package = "http://schemas.openxmlformats.org/package/2006"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        def put(name, data, method=zipfile.ZIP_DEFLATED):
            member = zipfile.ZipInfo(name, (2024, 1, 1, 0, 0, 0))
            member.compress_type = method
            archive.writestr(member, data)

        put("[Content_Types].xml",
            '<?xml version="1.0" encoding="UTF-8"?><Types xmlns="%s/content-types">'
            '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="png" ContentType="image/png"/><Override PartName="/word/document.xml" '
            'ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/></Types>'
            % package)
        put("_rels/.rels",
            '<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="%s/relationships"><Relationship Id="rId1" '
            'Type="%s/officeDocument" Target="word/document.xml"/></Relationships>' % (package, R))
        put("word/document.xml", document)
        put("word/_rels/document.xml.rels",
            '<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="%s/relationships">%s</Relationships>'
            % (package, relations))
        for n in range(1, pictures + 1):
            put("word/media/p%d.png" % n, b"\x89PNG\r\n\x1a\n" + random.Random(seed + 1000 + n).randbytes(100_000))
        for _, name, content in others:
            put("word/" + name, content)


def write_binary(folder, name, characters, blocks, pictures):
    """A .docx, and what LibreOffice makes of it as a binary document. One block in 42 begins with "the Lessor", the
    others with "any Lessor"."""
    rng = random.Random(4)
    paragraphs, number, sparse = [], 0, every(blocks * 6 // 251)
    for text in paragraphs_with_blocks(rng, Filler(rng), characters, every(blocks), 256):
        first, *others = text.split(BEGIN)
        paragraphs.append(first)
        for other in others:
            paragraphs[-1] += (BEGIN if sparse(number, blocks) else "any Lessor") + other
            number += 1
    source = os.path.join(folder, name + ".docx")
    write_docx(source, 4, paragraphs, pictures, pictures)
    with tempfile.TemporaryDirectory() as home:
        subprocess.run(["soffice", "--headless", "--norestore", "-env:UserInstallation=file://" + home, "--convert-to", "doc",
                        "--outdir", folder, source], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def part_of(root, inner):
    return '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n<w:%s xmlns:w="%s">%s</w:%s>' % (root, W, inner, root)


def write_elsewhere(folder):
    """Documents with much text beside main text, and each with the same as main text."""
    rng = random.Random(8)
    text = lambda blocks: paragraphs_with_blocks(rng, Filler(rng), 12_000, every(blocks), 400)
    paragraph = lambda words: "<w:p>%s</w:p>" % runs_of(rng, words)
    body = text(2)

    headers = [text(2) for _ in range(20)]
    notes = [paragraphs_with_blocks(rng, Filler(rng), 400, every(n % 10 == 0), 400) for n in range(500)]
    others = [("header", "header%d.xml" % n, part_of("hdr", "".join(map(paragraph, header)))) for n, header in enumerate(headers)]
    others.append(("footnotes", "footnotes.xml", part_of("footnotes", "".join(
        '<w:footnote w:id="%d">%s</w:footnote>' % (n + 1, "".join(map(paragraph, note))) for n, note in enumerate(notes)))))
    write_docx(os.path.join(folder, "notes.docx"), 8, body, 0, 0, others=others)
    write_docx(os.path.join(folder, "notes-main.docx"), 8, body + sum(headers + notes, []), 0, 0)

    embedded, inner = [text(2) for _ in range(50)], os.path.join(folder, "inner.docx")
    others = []
    for n, paragraphs in enumerate(embedded):
        write_docx(inner, 9 + n, paragraphs, 0, 0)
        with open(inner, "rb") as file:
            others.append(("package", "embedded%d.docx" % n, file.read()))
    os.remove(inner)
    write_docx(os.path.join(folder, "embedded.docx"), 9, body, 0, 0, others=others)
    write_docx(os.path.join(folder, "embedded-main.docx"), 9, body + sum(embedded, []), 0, 0)

    paragraphs = paragraphs_with_blocks(rng, Filler(rng), 1_600_000, every(1_200), 400)
    write_docx(os.path.join(folder, "hidden.docx"), 10, paragraphs, 0, 0, hidden="<w:rPr><w:vanish/></w:rPr>")
    write_docx(os.path.join(folder, "hidden-main.docx"), 10, paragraphs, 0, 0, hidden="<w:rPr><w:strike/></w:rPr>")


class MixedFiller(Filler):
    """Prose in which a share of the letters is not ASCII: words of several scripts among the others."""

    def __init__(self, rng, share, others=FOREIGN_WORDS):
        super().__init__(rng)
        self.share, self.others, self.letters, self.foreign = share, others, 0, 0

    def text(self, length):
        words, size = [], 0
        while size < length:
            wanted = self.foreign < self.share * self.letters
            word = self.rng.choice(self.others if wanted else WORDS)
            self.letters += len(word)
            self.foreign += sum(letter > "\x7f" for letter in word)
            size += len(word) + 1
            if self.rng.random() < 0.08:
                word += self.rng.choice((".", ",", ";"))
            words.append(word)
        return " ".join(words) + " "


def write_text(path, seed, megabytes, blocks, share=0.0, encoding="utf-8", others=FOREIGN_WORDS):
    """share: of the letters that are not ASCII; others: the words that hold them."""
    rng = random.Random(seed)
    filler = MixedFiller(rng, share, others) if share else Filler(rng)
    target = megabytes * 1_000_000
    dense = blocks > 1_000_000
    # A megabyte of prose, reused in a different order each time: what costs time is the searching, not the prose.
    stock = [filler.text(rng.randrange(*((8, 20) if dense else (300, 500)))) + "\n" for _ in range(25_000 if dense else 2500)]
    inner = [filler.text(12 if not dense else 6) for _ in range(1000)]
    written, planted = 0, 0
    with open(path, "wb") as file:
        file.write("\ufeff".encode(encoding) if encoding.startswith("utf-16") else b"")
        while written < target:
            text = rng.choice(stock)
            if planted < blocks and written >= planted * target // blocks:
                split = "\n" if rng.random() < 0.25 else ""
                at = min(100, len(text) // 2)
                text = text[:at] + BEGIN + " " + (filler.text(12) if not dense else rng.choice(inner)) + split + END + " " + text[at:]
                planted += 1
            written += file.write(text.encode(encoding))


def write_page(path, seed, megabytes, blocks):
    """A page as word processors write them; two of three blocks reach over inline tags."""
    rng = random.Random(seed)
    filler = Filler(rng)
    tags = ("b", "i", "u", 'span style="font-family:Arial"', 'span lang="en-GB"')
    length = (megabytes << 20) // blocks
    with open(path, "w", encoding="utf-8") as page:
        page.write('<html><head><meta charset="utf-8"><title>Page</title></head>\n<body>\n')
        for _ in range(blocks):
            size = 0
            while size < length - 400:
                tag = rng.choice(tags)
                text = '<p class="MsoNormal">%s<%s>%s</%s>%s</p>\n' % (
                    filler.text(120), tag, filler.text(60).strip(), tag.split()[0], " " + filler.text(120).strip())
                page.write(text)
                size += len(text)
            begin = rng.choice((BEGIN, "the <b>Lessor</b>", "the <i>Les</i>sor"))
            page.write("<p>%s%s %s%s</p>\n" % (filler.text(60), begin, filler.text(80), END))
        page.write("</body></html>\n")


def main():
    if not 2 <= len(sys.argv) <= 3 or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    folder, word = sys.argv[1], sys.argv[2] if len(sys.argv) == 3 else ""
    os.makedirs(folder, exist_ok=True)

    def wanted(name):
        return word in name

    def docx(name, seed, characters, blocks, tables, pictures, length=400, share=0.0):
        if not wanted(os.path.dirname(name) or name):
            return
        rng = random.Random(seed)
        filler = MixedFiller(rng, share) if share else Filler(rng)
        paragraphs = paragraphs_with_blocks(rng, filler, characters, every(blocks), length)
        write_docx(os.path.join(folder, name), seed, paragraphs, tables, pictures)

    docx("pages-2.docx", 1, 6_400, 4, 1, 1)
    docx("pages-50.docx", 2, 160_000, 60, 10, 5)
    docx("sparse.docx", 3, 3_200_000, 1_200, 200, 100)
    docx("dense.docx", 4, 3_200_000, 50_200, 200, 100, length=256)
    docx("foreign.docx", 3, 3_200_000, 1_200, 200, 100, share=0.6)
    docx("foreign-dense.docx", 4, 3_200_000, 50_200, 200, 100, length=256, share=0.6)
    for name, characters, blocks, pictures in (("binary", 3_200_000, 50_200, 200), ("binary-small", 160_000, 2_510, 10)):
        if wanted(name):
            write_binary(folder, name, characters, blocks, pictures)
    docx("none.docx", 6, 3_200_000, 0, 200, 100)
    if wanted("adversarial"):
        rng = random.Random(5)
        write_docx(os.path.join(folder, "adversarial.docx"), 5, adversarial(rng, Filler(rng), 3_200_000, 100_000), 200, 100)
    if wanted("folder"):
        os.makedirs(os.path.join(folder, "folder"), exist_ok=True)
    for n in range(500):
        docx("folder/%03d.docx" % n, 100 + n, 6_400, 4, 1, 1)
    if any(map(wanted, ("notes.docx", "embedded.docx", "hidden.docx"))):
        write_elsewhere(folder)
    if wanted("sparse.rtf"):
        rng = random.Random(7)
        write_rtf(os.path.join(folder, "sparse.rtf"), rng,
                  paragraphs_with_blocks(rng, Filler(rng), 21_000_000, every(10_000), 400))
    if wanted("page.html"):
        write_page(os.path.join(folder, "page.html"), 9, 30, 10_000)
    if wanted("sparse.txt"):
        write_text(os.path.join(folder, "sparse.txt"), 7, 200, 1_200)
    for name, share in (("ascii", 0.0), ("few", 0.015), ("many", 0.6)):
        for kind, blocks in (("", 64_000), ("-dense", 2_950_000)):
            if wanted(f"{name}{kind}.txt"):
                write_text(os.path.join(folder, f"{name}{kind}.txt"), 8, 200, blocks, share)
    for name, share, others, page in (("western", 0.05, WESTERN_WORDS, "cp1252"), ("japanese", 0.6, JAPANESE_WORDS, "cp932")):
        for encoding in ("utf-8", "utf-16-le", page):
            if wanted(f"{name}-{encoding}.txt"):
                write_text(os.path.join(folder, f"{name}-{encoding}.txt"), 11, 50, 16_000, share, encoding, others)


if __name__ == "__main__":
    main()
