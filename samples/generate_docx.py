#!/usr/bin/env python3
"""Writes the Word documents among the samples, the same bytes every time.

    generate_docx.py [FOLDER]
"""

import struct
import sys
import zipfile
import zlib
from pathlib import Path
from xml.sax.saxutils import escape

OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
WORD = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
TYPE = "application/vnd.openxmlformats-officedocument.wordprocessingml."
NAMESPACES = {
    "w": WORD,
    "r": OFFICE,
    "mc": "http://schemas.openxmlformats.org/markup-compatibility/2006",
    "m": "http://schemas.openxmlformats.org/officeDocument/2006/math",
    "wp": "http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing",
    "a": "http://schemas.openxmlformats.org/drawingml/2006/main",
    "pic": "http://schemas.openxmlformats.org/drawingml/2006/picture",
    "wps": "http://schemas.microsoft.com/office/word/2010/wordprocessingShape",
    "v": "urn:schemas-microsoft-com:vml",
    "w14": "http://schemas.microsoft.com/office/word/2010/wordml",
    "w15": "http://schemas.microsoft.com/office/word/2012/wordml",
}
DECLARATION = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\r\n'
BY = 'w:author="A. Clerk" w:date="2024-03-01T09:00:00Z"'


def run(text, properties=""):
    rpr = f"<w:rPr>{properties}</w:rPr>" if properties else ""
    return f'<w:r>{rpr}<w:t xml:space="preserve">{escape(text)}</w:t></w:r>'


def element(inner, properties=""):
    return f"<w:r>{'<w:rPr>' + properties + '</w:rPr>' if properties else ''}{inner}</w:r>"


def p(*content, style="", properties=""):
    ppr = (f'<w:pStyle w:val="{style}"/>' if style else "") + properties
    return f"<w:p>{'<w:pPr>' + ppr + '</w:pPr>' if ppr else ''}{''.join(content)}</w:p>"


def field(code, result):
    mark = '<w:r><w:fldChar w:fldCharType="%s"/></w:r>'
    return (mark % "begin" + f'<w:r><w:instrText xml:space="preserve"> {escape(code)} </w:instrText></w:r>'
            + mark % "separate" + result + mark % "end")  # fmt: skip


def simple_field(code, result):
    return f'<w:fldSimple w:instr=" {code} ">{result}</w:fldSimple>'


def link(target, *content):
    return f'<w:hyperlink r:id="{target}" w:history="1">{"".join(content)}</w:hyperlink>'


def inserted(number, text):
    return f'<w:ins w:id="{number}" {BY}>{run(text)}</w:ins>'


def deleted(number, text):
    return f'<w:del w:id="{number}" {BY}><w:r><w:delText xml:space="preserve">{text}</w:delText></w:r></w:del>'


def bookmark(number, name, *content):
    return f'<w:bookmarkStart w:id="{number}" w:name="{name}"/>{"".join(content)}<w:bookmarkEnd w:id="{number}"/>'


def commented(number, *content):
    return (f'<w:commentRangeStart w:id="{number}"/>{"".join(content)}<w:commentRangeEnd w:id="{number}"/>'
            f'<w:r><w:rPr><w:rStyle w:val="CommentReference"/></w:rPr><w:commentReference w:id="{number}"/></w:r>')  # fmt: skip


def note(kind, number):
    style = kind.capitalize() + "Reference"
    return f'<w:r><w:rPr><w:rStyle w:val="{style}"/></w:rPr><w:{kind}Reference w:id="{number}"/></w:r>'


def cell(*content, properties=""):
    return f'<w:tc><w:tcPr><w:tcW w:w="2400" w:type="dxa"/>{properties}</w:tcPr>{"".join(content)}</w:tc>'


def row(*cells):
    return f"<w:tr>{''.join(cells)}</w:tr>"


def table(columns, *rows):
    borders = "".join(f'<w:{side} w:val="single" w:sz="4" w:space="0" w:color="auto"/>'
                      for side in ("top", "left", "bottom", "right", "insideH", "insideV"))  # fmt: skip
    return (f'<w:tbl><w:tblPr><w:tblW w:w="0" w:type="auto"/><w:tblBorders>{borders}</w:tblBorders></w:tblPr><w:tblGrid>'
            + '<w:gridCol w:w="2400"/>' * columns + f"</w:tblGrid>{''.join(rows)}</w:tbl>")  # fmt: skip


def control(number, inner, properties=""):
    return (f'<w:sdt><w:sdtPr><w:id w:val="{number}"/>{properties}</w:sdtPr><w:sdtContent>{inner}</w:sdtContent></w:sdt>')


def picture(relationship, number, floating=False):
    graphic = (
        '<a:graphic><a:graphicData uri="http://schemas.openxmlformats.org/drawingml/2006/picture"><pic:pic>'
        f'<pic:nvPicPr><pic:cNvPr id="{number}" name="seal.png"/><pic:cNvPicPr/></pic:nvPicPr><pic:blipFill>'
        f'<a:blip r:embed="{relationship}"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr><a:xfrm>'
        '<a:off x="0" y="0"/><a:ext cx="360000" cy="360000"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom>'
        "</pic:spPr></pic:pic></a:graphicData></a:graphic>"
    )
    size = f'<wp:extent cx="360000" cy="360000"/>'
    properties = f'<wp:docPr id="{number}" name="Seal {number}"/>'
    if not floating:
        return f"<w:r><w:drawing><wp:inline>{size}{properties}{graphic}</wp:inline></w:drawing></w:r>"
    return (
        '<w:r><w:drawing><wp:anchor distT="0" distB="0" distL="0" distR="0" simplePos="0" relativeHeight="1" '
        'behindDoc="0" locked="0" layoutInCell="1" allowOverlap="1"><wp:simplePos x="0" y="0"/>'
        '<wp:positionH relativeFrom="column"><wp:posOffset>4000000</wp:posOffset></wp:positionH>'
        '<wp:positionV relativeFrom="paragraph"><wp:posOffset>0</wp:posOffset></wp:positionV>'
        f"{size}<wp:wrapSquare wrapText=\"bothSides\"/>{properties}{graphic}</wp:anchor></w:drawing></w:r>"
    )


def text_box(text):
    inside = f"<w:txbxContent>{p(run(text))}</w:txbxContent>"
    return (
        '<w:r><mc:AlternateContent><mc:Choice Requires="wps"><w:drawing><wp:inline><wp:extent cx="1800000" cy="360000"/>'
        '<wp:docPr id="90" name="Stamp"/><a:graphic><a:graphicData '
        'uri="http://schemas.microsoft.com/office/word/2010/wordprocessingShape"><wps:wsp><wps:cNvSpPr txBox="1"/><wps:spPr>'
        '<a:xfrm><a:off x="0" y="0"/><a:ext cx="1800000" cy="360000"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/></a:prstGeom>'
        f"</wps:spPr><wps:txbx>{inside}</wps:txbx><wps:bodyPr/></wps:wsp></a:graphicData></a:graphic></wp:inline></w:drawing>"
        '</mc:Choice><mc:Fallback><w:pict><v:shape style="width:140pt;height:28pt"><v:textbox>'
        f"{inside}</v:textbox></v:shape></w:pict></mc:Fallback></mc:AlternateContent></w:r>"
    )


def png():
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + bytes((200, 30 + y * 5, 40)) * 24 for y in range(24))
    header = struct.pack(">IIBBBBB", 24, 24, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def styles():
    def style(kind, identifier, name, inner, default=""):
        return f'<w:style w:type="{kind}" {default}w:styleId="{identifier}"><w:name w:val="{name}"/>{inner}</w:style>'

    return (
        f'{DECLARATION}<w:styles xmlns:w="{WORD}"><w:docDefaults><w:rPrDefault><w:rPr><w:rFonts w:ascii="Liberation Serif" '
        'w:hAnsi="Liberation Serif"/><w:sz w:val="22"/></w:rPr></w:rPrDefault></w:docDefaults>'
        + style("paragraph", "Normal", "Normal", '<w:pPr><w:spacing w:after="120"/></w:pPr>', 'w:default="1" ')
        + style("paragraph", "Heading1", "heading 1", '<w:basedOn w:val="Normal"/><w:pPr><w:keepNext/></w:pPr><w:rPr><w:b/>'
                '<w:sz w:val="28"/></w:rPr>')
        + style("character", "FootnoteReference", "footnote reference", '<w:rPr><w:vertAlign w:val="superscript"/></w:rPr>')
        + style("character", "EndnoteReference", "endnote reference", '<w:rPr><w:vertAlign w:val="superscript"/></w:rPr>')
        + style("character", "CommentReference", "annotation reference", '<w:rPr><w:sz w:val="16"/></w:rPr>')
        + style("character", "Internal", "Internal", "<w:rPr><w:vanish/></w:rPr>")
        + "</w:styles>"
    )  # fmt: skip


def story(root, items):
    separators = "" if root == "comments" else "".join(
        f'<w:{root[:-1]} w:type="{kind}" w:id="{number}">{p(f"<w:r><w:{kind}/></w:r>")}</w:{root[:-1]}>'
        for number, kind in ((-1, "separator"), (0, "continuationSeparator")))  # fmt: skip
    names = "".join(f' xmlns:{prefix}="{NAMESPACES[prefix]}"' for prefix in ("w", "w14"))
    return f"{DECLARATION}<w:{root}{names}>{separators}{''.join(items)}</w:{root}>"


def notes_of(kind, texts):
    return [f'<w:{kind} w:id="{number}">{p(f"<w:r><w:{kind}Ref/></w:r>", run(" " + text))}</w:{kind}>'
            for number, text in texts.items()]  # fmt: skip


def comments_of(texts):
    return [f'<w:comment w:id="{number}" {BY} w:initials="AC"><w:p w14:paraId="0000A{number:03}">{run(text)}</w:p></w:comment>'
            for number, text in texts.items()]  # fmt: skip


def document(body, last_section=""):
    names = "".join(f' xmlns:{prefix}="{uri}"' for prefix, uri in NAMESPACES.items())
    section = f'<w:sectPr>{last_section}<w:pgSz w:w="11906" w:h="16838"/><w:pgMar w:top="1134" w:right="1134" ' \
              'w:bottom="1134" w:left="1134" w:header="708" w:footer="708" w:gutter="0"/></w:sectPr>'  # fmt: skip
    return f'{DECLARATION}<w:document{names} mc:Ignorable="w14 w15"><w:body>{"".join(body)}{section}</w:body></w:document>'


PARTS = {  # name: (relationship, content type)
    "styles": ("styles", "styles+xml"),
    "footnotes": ("footnotes", "footnotes+xml"),
    "endnotes": ("endnotes", "endnotes+xml"),
    "comments": ("comments", "comments+xml"),
    "commentsExtended": ("http://schemas.microsoft.com/office/2011/relationships/commentsExtended", "commentsExtended+xml"),
}


def package(path, main, parts, links=(), pictures=(), main_name="word/document.xml", kind="document.main+xml"):
    """links: targets of rIdLink1 …; pictures: rIdPicture1 …"""
    folder, _, file = main_name.rpartition("/")
    relations, types = [], [f'<Override PartName="/{main_name}" ContentType="{TYPE}{kind}"/>']
    members = {main_name: main}
    for name, xml in parts.items():
        relation, content = PARTS[name]
        relation = relation if ":" in relation else f"{OFFICE}/{relation}"
        relations.append(f'<Relationship Id="rId{name}" Type="{relation}" Target="{name}.xml"/>')
        types.append(f'<Override PartName="/{folder}/{name}.xml" ContentType="{TYPE}{content}"/>')
        members[f"{folder}/{name}.xml"] = xml
    for number, target in enumerate(links, 1):
        relations.append(f'<Relationship Id="rIdLink{number}" Type="{OFFICE}/hyperlink" Target="{target}" '
                         'TargetMode="External"/>')  # fmt: skip
    for number, data in enumerate(pictures, 1):
        relations.append(f'<Relationship Id="rIdPicture{number}" Type="{OFFICE}/image" Target="media/{number}.png"/>')
        members[f"{folder}/media/{number}.png"] = data
    head = f'{DECLARATION}<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">'
    everything = {
        "[Content_Types].xml": f'{DECLARATION}<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        '<Default Extension="xml" ContentType="application/xml"/><Default Extension="png" ContentType="image/png"/>'
        + "".join(types) + "</Types>",
        "_rels/.rels": f'{head}<Relationship Id="rId1" Type="{OFFICE}/officeDocument" Target="{main_name}"/></Relationships>',
        f"{folder}/_rels/{file}.rels": head + "".join(relations) + "</Relationships>",
        **members,
    }  # fmt: skip
    with zipfile.ZipFile(path, "w") as archive:
        for name, data in everything.items():
            info = zipfile.ZipInfo(name, (2024, 3, 1, 9, 0, 0))
            info.compress_type = zipfile.ZIP_STORED if name.endswith(".png") else zipfile.ZIP_DEFLATED
            archive.writestr(info, data)


def lease(path):
    """A draft lease as it comes back from the other side: tracked, commented, with notes to file."""
    bold, italic, small = "<w:b/>", "<w:i/>", '<w:smallCaps/><w:color w:val="1F3864"/>'
    section = '<w:sectPr><w:type w:val="nextPage"/><w:pgSz w:w="11906" w:h="16838"/></w:sectPr>'
    body = [
        p(run("Lease of Commercial Premises"), style="Heading1"),
        p(run("DRAFT of 3 March, page "), field("PAGE", run("1")), run(" of "), simple_field("NUMPAGES", run("2"))),
        p(run("The Les", bold), run("sor", bold + italic), run(" hereby lets to ", italic),
          link("rIdLink1", run("Brightwater Books LLP", '<w:u w:val="single"/>')), run(" as ", small),
          commented(0, run("the Les"), run("see")), inserted(11, " and its successors"), deleted(12, " only"), run("."),
          properties='<w:jc w:val="both"/>'),
        p(bookmark(1, "Term", run("2. Term.", bold)), run(" The term is ten years from 1 May."), note("footnote", 1),
          run(" The Lessee may end this lease at the end of the fifth year.")),
        p(run("3. Rent. The Lessee shall pay rent of £24,000 a year. "), run("[Note to file: client asked for £22,500; "),
          run("see letter of 12 February.]", italic), run(" See clause "), field("REF Term \\h", run("2. Term.")), run(".")),
        p(run("4. Repairs. The Lessor shall keep the roof in repair."), run(" [Note to file: ask the "),
          commented(1, run("surveyor")), run(".")),
        p(run("He is away until April.]"), run(" The Lessee shall keep the inside in repair.")),
        p(run("Signed for the Lessor"), element("<w:tab/>"), run("Signed for the Lessee"),
          properties='<w:tabs><w:tab w:val="left" w:pos="5000"/></w:tabs>' + section),
        p(run("Schedule", bold), element('<w:br w:type="page"/>'), run("Plan A"), note("footnote", 2)),
    ]  # fmt: skip
    extended = (f'{DECLARATION}<w15:commentsEx xmlns:w15="{NAMESPACES["w15"]}"><w15:commentEx w15:paraId="0000A000" '
                'w15:done="0"/><w15:commentEx w15:paraId="0000A001" w15:paraIdParent="0000A000" w15:done="0"/>'
                "</w15:commentsEx>")  # fmt: skip
    package(path, document(body), {
        "styles": styles(),
        "footnotes": story("footnotes", notes_of("footnote", {1: "Subject to planning consent.", 2: "Not to scale."})),
        "comments": story("comments", comments_of({0: "Check the register of companies.", 1: "Name?"})),
        "commentsExtended": extended,
    }, links=["https://brightwater.example/"])  # fmt: skip


def settlement(path):
    """Statements in tables: nested, merged, with a passage that runs from the text into them."""
    inner = table(2, row(cell(p(run("Principal"))), cell(p(run("£12,000")))),
                  row(cell(p(run("Interest"))), cell(p(run("£840"), note("footnote", 1)))))  # fmt: skip
    spanning = '<w:gridSpan w:val="2"/>'
    first, rest = '<w:vMerge w:val="restart"/>', "<w:vMerge/>"
    body = [
        p(run("Settlement Agreement"), style="Heading1"),
        p(run("The parties agree as follows. Without prejudice: the sums below are")),
        table(3,
              row(cell(p(run("confidential until signature.")), properties=spanning), cell(p(run("Remarks")))),
              row(cell(p(run("Claimant")), properties=first), cell(p(run("Sums due")), inner, p(run("in all £12,840"))),
                  cell(p(run("paid in two parts"), element("<w:br/>"), run("on 1 May and 1 June")))),
              row(cell(p(), properties=rest), cell(p(bookmark(1, "Costs", run("Costs")))), cell(p(simple_field("DATE", run("3 March")))))),
        p(run("End of the sums. Each party bears its own costs.")),
        table(1, row(cell(p(run("Begin confidential"), properties='<w:jc w:val="center"/>'), p(run("Name of the child"))))),
        table(1, row(cell(p(run("End confidential"))))),
        p(run("Dated "), control(501, run("3 March"), '<w:date><w:dateFormat w:val="d MMMM"/></w:date>')),
    ]  # fmt: skip
    package(path, document(body), {
        "styles": styles(),
        "footnotes": story("footnotes", notes_of("footnote", {1: "At 7 per cent."})),
    })  # fmt: skip


def catalogue(path):
    """An archive's finding aid: pictures, symbols, controls, breaks, hidden notes, formulas, endnotes."""
    body = [
        control(601, p(run("Papers of the Harbour Estate"), style="Heading1"), '<w:alias w:val="Title"/>'),
        p(picture("rIdPicture1", 1), run(" Fonds HE, "), control(602, run("1871–1934"), "<w:text/>"),
          picture("rIdPicture1", 2, floating=True), run(" — extent 4·2 m"), element('<w:sym w:font="Wingdings" w:char="F0FC"/>')),
        p(run("HE/1"), element("<w:tab/>"), run("Minutes"), element("<w:noBreakHyphen/>"), run("books, closed un"),
          element("<w:softHyphen/>"), run("til 2034"), note("endnote", 1), run(" [restricted: ", "<w:b/>"),
          run("medical", '<w:rStyle w:val="Internal"/>'), run(" records]", "<w:b/>")),
        p(text_box("Reading room only"), run("HE/2"), element("<w:tab/>"), run("Letters from A. Marten ☐ and others 😀"),
          element('<w:br w:type="column"/>'), run("of Quay\u00a0Street")),
        p(field("HYPERLINK \"https://archive.example/he\"", run("Catalogue online")), run(", shelf "),
          "<m:oMath><m:r><m:t>n+1</m:t></m:r></m:oMath>", run(".")),
        p(run("[restricted: ")) + control(603, p(run("names of patients")) + p(run("and of nurses"))) + p(run("end]")),
        p(field("TOC \\o", run("HE/1 Minutes") + element("<w:tab/>") + field("PAGEREF x", run("2"))) ),
        p(f'<w:moveFromRangeStart w:id="21" w:name="move1" {BY}/><w:moveFrom w:id="22" {BY}>{run("Box 9")}</w:moveFrom>'
          '<w:moveFromRangeEnd w:id="21"/>', run("; "),
          f'<w:moveToRangeStart w:id="23" w:name="move1" {BY}/><w:moveTo w:id="24" {BY}>{run("Box 9")}</w:moveTo>'
          '<w:moveToRangeEnd w:id="23"/>', '<w:permStart w:id="7" w:edGrp="everyone"/>', run("open"), '<w:permEnd w:id="7"/>'),
    ]  # fmt: skip
    package(path, document(body), {
        "styles": styles(),
        "endnotes": story("endnotes", notes_of("endnote", {1: "By order of the depositor."})),
    }, pictures=[png()])  # fmt: skip


def deed(path):
    """The strict kind, in UTF-16, without prefixes and with a main part of its own name; as another program writes it."""
    strict = "http://purl.oclc.org/ooxml/wordprocessingml/main"
    paragraphs = "".join(f"<p><pPr><jc x:val=\"both\"/></pPr><r><rPr><b/></rPr><t xml:space=\"preserve\">{number}. </t></r>"
                         f"<r><t>{escape(text)}</t></r></p>" for number, text in enumerate((
                             "The Grantor conveys the meadow to the Grantee.",
                             "The Grantee shall keep the hedges & ditches.",
                             "Το ακίνητο παραμένει ελεύθερο βαρών."), 1))  # fmt: skip
    xml = (f'<?xml version="1.0" encoding="UTF-16"?><document xmlns="{strict}" xmlns:x="{strict}"><body>{paragraphs}'
           "<sectPr/></body></document>")  # fmt: skip
    package(path, b"\xff\xfe" + xml.encode("utf-16-le"), {}, main_name="deeds/main deed.xml".replace(" ", "-"))


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent
    lease(folder / "lease.docx")
    settlement(folder / "settlement.docx")
    catalogue(folder / "catalogue.docx")
    deed(folder / "deed.docx")


if __name__ == "__main__":
    main()
