"""The cases to be measured, each with its peers and its aims."""

import re
from dataclasses import dataclass
from pathlib import Path

import check
from job import Job

BENCH = Path(__file__).resolve().parent
ROOT = BENCH.parent
PLUVO = ROOT / "build/release/bin/pluvo"
LIMIT = ROOT / "build/bench/bin/limit"
BEGIN, END, TEXT = "the Lessor", "the Lessee", "the parties"
BLOCK = ["--begin", BEGIN, "--end", END]


@dataclass
class Case:
    name: str
    source: str
    jobs: list
    must: dict  # peer name -> (factor, at most or at least)
    changes: bool = True
    right: object = None  # checks the result
    memory: float = 0  # MB at most
    repeat: int = 0


def pluvo(*words):
    return Job("pluvo", [str(PLUVO), *words])


def beside(name, document, *words):
    """PLUVO in another case, measured in the same run."""
    return Job(f"pluvo, {name}", [str(PLUVO), *words], other=document)


def lxml(operation, *text):
    return Job("lxml", ["/usr/bin/python3", str(BENCH / "peers/with_lxml.py"), operation, BEGIN, END, *text, "{in}"])


def python_docx(operation):
    return Job("python-docx", ["/usr/bin/python3", str(BENCH / "peers/with_python_docx.py"), operation, BEGIN, END, "{in}"])


def libreoffice(operation, files, begin=BEGIN):
    return Job("LibreOffice", ["/usr/bin/python3", str(BENCH / "peers/with_libreoffice.py"), operation, begin, END, files],
               once=True, tells=True)


def poi(begin):
    """libapache-poi-java, in a machine that is warm."""
    jars = ":".join(f"/usr/share/java/{name}.jar" for name in ("poi", "poi-scratchpad", "commons-collections4"))
    return Job("POI", ["java", "-cp", jars, str(BENCH / "peers/HighlightWithPoi.java"), begin, END, "{in}"], once=True, tells=True)


def limit(*words, over_result=False, name="limit"):
    return Job(name, [str(LIMIT), *words], over_result=over_result)


def changed(operation, text=""):
    return lambda original, result: check.check(original, result, operation, BEGIN, END, text)


def found(*words, flags=0, encoding=""):
    command = [PLUVO, "find", "--quiet", *words, *BLOCK]
    return lambda original, _: check.check_found(command, original, BEGIN, END, flags, encoding)


def docx_cases():
    edit = {"highlight": (["highlight"], []), "replace": (["replace", "--text", TEXT], [TEXT])}
    for name, quicker, memory in (("sparse", 4, 60), ("dense", 8, 100)):
        for operation, (words, text) in edit.items():
            factor = 2.5 if (name, operation) == ("dense", "replace") else 2.2
            slow = [libreoffice("highlight", "{in}")] if (name, operation) == ("sparse", "highlight") else []
            yield Case(
                f".docx 1,000 pages, {name}, {operation}", f"{name}.docx",
                [pluvo(*words, *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1", over_result=True), lxml(operation, *text),
                 *slow],
                {"limit": ("at most", factor), "lxml": ("at least", quicker)},
                right=changed(operation, *text), memory=memory)
    yield Case(".docx 1,000 pages, sparse, find", "sparse.docx",
               [pluvo("find", "--quiet", *BLOCK, "{in}"), limit("docx-find", "{in}", BEGIN), lxml("find")],
               {"limit": ("at most", 2.2), "lxml": ("at least", 5)}, changes=False, right=found())
    # Of the beginnings that share the one ending the first is taken that is near enough to it.
    for name, right in (("adversarial", lambda original, result: check.check_only_block(original, result, BEGIN, END)),
                        ("none", changed("highlight"))):
        yield Case(f".docx 1,000 pages, {name}, highlight", f"{name}.docx",
                   [pluvo("highlight", *BLOCK, "{in}"), beside("sparse", "sparse.docx", "highlight", *BLOCK, "{in}"),
                    lxml("highlight")], {"pluvo, sparse": ("at most", 1.6)}, right=right, memory=100)
    for name in ("foreign", "foreign-dense"):
        for operation, (words, text) in edit.items():
            must = {"limit": ("at most", 2.5 if (name, operation) == ("foreign-dense", "replace") else 2.2)}
            yield Case(
                f".docx 1,000 pages, 60 % not ASCII, {'dense' if 'dense' in name else 'sparse'}, {operation}", f"{name}.docx",
                [pluvo(*words, *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1", over_result=True)], must,
                right=changed(operation, *text))
    for operation, words in (("find", ["find", "--quiet"]), ("highlight", ["highlight"]),
                             ("replace", ["replace", "--text", TEXT]), ("delete", ["delete"]),
                             ("insert", ["insert", "--before", "--text", TEXT])):
        peers = [] if operation == "find" else [limit("docx-once", "{in}", "{out}", BEGIN, "1", name="limit, one flush")]
        peers += [lxml("highlight"), python_docx("highlight")] if operation == "highlight" else []
        yield Case(f".docx 2 pages, {operation}", "pages-2.docx",
                   [pluvo(*words, *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1"), *peers],
                   {"self": ("ms at most", 12), "limit, one flush": ("at most", 2.2)}, changes=operation != "find",
                   right=changed("highlight") if operation == "highlight" else None, repeat=30)
    yield Case("start-up", "pages-2.docx", [pluvo("--version"), Job("true", ["true"])],
               {"true": ("ms more at most", 5)}, changes=False, repeat=50)
    yield Case(".docx 50 pages, highlight", "pages-50.docx",
               [pluvo("highlight", *BLOCK, "{in}"), limit("docx", "{in}", "{out}", BEGIN, "1"), lxml("highlight"),
                python_docx("highlight")], {}, right=changed("highlight"))
    yield Case("folder of 500 .docx, highlight", "folder",
               [pluvo("highlight", "--jobs", "1", *BLOCK, "{files}"),
                Job("limit", ["sh", "-c", f'for f in "$0"/*; do {LIMIT} docx "$f" "$1" "{BEGIN}" 1; done', "{in}", "{out}"]),
                Job("lxml", ["/usr/bin/python3", str(BENCH / "peers/with_lxml.py"), "highlight", BEGIN, END, "{files}"]),
                libreoffice("highlight", "{files}")],
               {"limit": ("at most", 3), "lxml": ("at least", 8)},
               right=lambda original, result: check.check_folder(original, result, BEGIN, END))
    for operation, words, quicker in (("find", ["find", "--quiet"], 1.7), ("highlight", ["highlight"], 1.3)):
        yield Case(f"folder of 500 .docx, {operation}, two jobs", "folder",
                   [pluvo(*words, "--jobs", "2", *BLOCK, "{files}"),
                    beside("one job", "folder", *words, "--jobs", "1", *BLOCK, "{files}")],
                   {"pluvo, one job": ("at least", quicker)}, changes=operation != "find")


def doc_cases():
    yield Case(".doc 28 MB, 1,000 pages, find", "binary.doc",
               [pluvo("find", "--quiet", *BLOCK, "{in}"), limit("text-find", "{in}", BEGIN)],
               {"limit": ("at most", 4)}, changes=False, right=found())
    # Every block begins with "Lessor", and one of 42 with "the Lessor".
    for title, source, begin, factor in ((".doc 28 MB, 1,200 blocks", "binary.doc", BEGIN, 6),
                                         (".doc 28 MB, 50,200 blocks", "binary.doc", "Lessor", 20),
                                         (".doc 1.4 MB, 2,510 blocks", "binary-small.doc", "Lessor", 0)):
        # LibreOffice takes too long for 50,200 blocks.
        peers = [poi(begin)] + [libreoffice("highlight", "{in}", begin)] * (factor != 20)
        beside_limit = [limit("text", "{in}", "{out}", begin)] * (factor != 0)
        yield Case(f"{title}, highlight", source,
                   [pluvo("highlight", "--begin", begin, "--end", END, "{in}"), *beside_limit, *peers],
                   {"limit": ("at most", factor), "LibreOffice": ("at least", 25), "POI": ("at least", 5)},
                   right=lambda original, result, begin=begin: check.check_binary(original, result, begin, END))


def rtf_cases():
    yield Case(".rtf 53 MB, 10,000 blocks, highlight", "sparse.rtf",
               [pluvo("highlight", *BLOCK, "{in}"), limit("text", "{in}", "{out}", BEGIN, over_result=True),
                libreoffice("highlight", "{in}")],
               {"limit": ("at most", 6), "LibreOffice": ("at least", 40)},
               right=lambda original, result: check.check_rtf(original, result, BEGIN, END), memory=200)


def elsewhere_cases():
    """The look at other texts, beside the same text as main text."""
    # Without --strict a quiet find has nobody to tell of other texts, and does not look.
    find = ["find", "--quiet", "--strict", *BLOCK]
    for name, what, factor in (("notes", "20 headers and 500 notes", 1.2), ("embedded", "50 embedded packages", 1.2),
                               ("hidden", "hidden text throughout", 1.3)):
        yield Case(f".docx with {what}, find", f"{name}.docx",
                   [Job("pluvo", [str(PLUVO), *find, "{in}"], statuses=(2,)), beside("as main text", f"{name}-main.docx", *find, "{in}")],
                   {"pluvo, as main text": ("at most", factor)}, changes=False)


def page_cases():
    # The limit goes through the page once, from tag to tag, and writes it.
    yield Case(".html 30 MB, 10,000 blocks, highlight", "page.html",
               [pluvo("highlight", *BLOCK, "{in}"), limit("text", "{in}", "{out}", "<"), libreoffice("highlight", "{in}")],
               {"limit": ("at most", 6), "LibreOffice": ("at least", 40)},
               right=lambda original, result: check.check_page(original, result, 10_000), memory=90)


def text_cases():
    def perl(operation, *rest):
        return Job("perl", ["perl", str(BENCH / "peers/find.pl"), operation, BEGIN, END, *rest])

    whole = ["--unit", "document"]
    yield Case(".txt 200 MB, sparse, find", "sparse.txt",
               [pluvo("find", "--quiet", "--match-case", *whole, *BLOCK, "{in}"), limit("text-find", "{in}", BEGIN),
                perl("find", "{in}"), Job("ripgrep", ["rg", "-U", "--multiline-dotall", "-c", f"{BEGIN}.*?{END}", "{in}"])],
               {"perl": ("at least", 2)}, changes=False, memory=240, right=found("--match-case", *whole))
    yield Case(".txt 200 MB, sparse, find, any case", "sparse.txt",
               [pluvo("find", "--quiet", *whole, *BLOCK, "{in}"),
                beside("match case", "", "find", "--quiet", "--match-case", *whole, *BLOCK, "{in}"), perl("find", "{in}", "i")],
               {"pluvo, match case": ("at most", 2)}, changes=False, memory=240, right=found(*whole, flags=re.IGNORECASE))
    yield Case(".txt 200 MB, sparse, replace", "sparse.txt",
               [pluvo("replace", "--match-case", *whole, *BLOCK, "--text", TEXT, "{in}"),
                limit("text", "{in}", "{out}", BEGIN), perl("replace", TEXT, "{in}")],
               {"perl": ("at least", 2)}, memory=240,
               right=lambda original, result: check.check_text(original, result, BEGIN, END, TEXT))
    yield from script_cases(perl, whole)
    yield from encoded_cases(["--match-case", *whole, *BLOCK])


def encoded_cases(exact):
    """Texts in other encodings than UTF-8, beside one of as many bytes in UTF-8 with words of the same languages."""
    edit = ["replace", *exact, "--text", TEXT, "{in}"]
    find = ["find", "--quiet", *exact, "{in}"]
    for language, encoding, name in (("western", "cp1252", "Windows-1252"), ("western", "utf-16-le", "UTF-16"),
                                     ("japanese", "cp932", "Shift_JIS"), ("japanese", "utf-16-le", "UTF-16")):
        title, source, peer = f".txt 50 MB, {language}, {name}", f"{language}-{encoding}.txt", f"{language}-utf-8.txt"
        yield Case(f"{title}, find", source, [pluvo(*find), beside("UTF-8", peer, *find)], {"pluvo, UTF-8": ("at most", 1.5)},
                   changes=False, right=found("--match-case", "--unit", "document", encoding=encoding))
        yield Case(f"{title}, replace", source, [pluvo(*edit), beside("UTF-8", peer, *edit)], {"pluvo, UTF-8": ("at most", 1.5)},
                   right=lambda original, result, encoding=encoding: check.check_encoded(
                       original, result, BEGIN, END, TEXT, encoding))


def script_cases(perl, whole):
    """Texts of three shares of letters that are not ASCII, with 64,000 blocks and with one at every other line."""
    exact = ["--match-case", *whole, *BLOCK]
    for kind, blocks, quicker in (("sparse", 64_000, 2), ("dense", 2_950_000, 1)):
        suffix = "-dense" if kind == "dense" else ""
        for name, letters in (("ascii", "ASCII"), ("few", "1.5 % not ASCII"), ("many", "60 % not ASCII")):
            title, source = f".txt 200 MB, {letters}, {kind}", f"{name}{suffix}.txt"
            ripgrep = Job("ripgrep", ["rg", "-U", "--multiline-dotall", "-c", f"{BEGIN}.*?{END}", "{in}"])
            ascii_ = [] if name == "ascii" else [beside("ASCII", f"ascii{suffix}.txt", "find", "--quiet", *exact, "{in}")]
            yield Case(f"{title}, find", source,
                       [pluvo("find", "--quiet", *exact, "{in}"), *ascii_, perl("find", "{in}"), ripgrep],
                       {"perl": ("at least", 1), "ripgrep": ("at least", 1), "pluvo, ASCII": ("at most", 1.3)},
                       changes=False, memory=210, right=found("--match-case", *whole))
            yield Case(f"{title}, find, any case", source,
                       [pluvo("find", "--quiet", *whole, *BLOCK, "{in}"),
                        beside("match case", "", "find", "--quiet", *exact, "{in}")],
                       {"pluvo, match case": ("at most", 1.5)}, changes=False, right=found(*whole, flags=re.IGNORECASE))
            for unit in ("word", "sentence"):
                yield Case(f"{title}, find, {unit}s", source,
                           [pluvo("find", "--quiet", "--match-case", "--unit", unit, "--apart", "30", *BLOCK, "{in}"),
                            beside("document", "", "find", "--quiet", *exact, "{in}")],
                           {"pluvo, document": ("at most", 2)}, changes=False)
            yield Case(f"{title}, replace, any case", source,
                       [pluvo("replace", *whole, *BLOCK, "--text", TEXT, "{in}"),
                        beside("match case", "", "replace", *exact, "--text", TEXT, "{in}")],
                       {"pluvo, match case": ("at most", 1.5)})
            yield Case(f"{title}, replace", source,
                       [pluvo("replace", *exact, "--text", TEXT, "{in}"), perl("replace", TEXT, "{in}")],
                       {"perl": ("at least", quicker)}, memory=210 + 64 * blocks / 1e6,
                       right=lambda original, result: check.check_text(original, result, BEGIN, END, TEXT))
