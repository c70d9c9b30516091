"""Rich Text as a word processor writes it: each run in a group with its look, each paragraph with its properties."""

HEAD = (
    r"{\rtf1\adeflang1025\ansi\ansicpg1252\uc1\adeff0\deff0\stshfdbch0{\fonttbl{\f0\fbidi \froman\fcharset0\fprq2 Times;}"
    r"{\f1\fbidi \fswiss\fcharset0\fprq2 Arial;}}{\colortbl;\red0\green0\blue0;\red255\green0\blue0;}"
    r"{\stylesheet{\ql \li0\ri0\widctlpar\f0\fs24 \snext0 Normal;}{\s1\b\fs32 heading 1;}}{\info{\title Lease}}"
    "\n"
    r"{\header \pard\plain \qr\fs16 Lease\par}\paperw12240\paperh15840\widowctrl\sectd "
)
LOOKS = (r"\b", r"\i", r"\cf2", "", "", "", "")
PARAGRAPH = "\n" r"\pard\plain \ltrpar\ql \li0\ri0\sa200\sl276\slmult1\widctlpar\wrapdefault\aspalpha\rin0\lin0\itap0 "


def write_rtf(path, rng, paragraphs):
    with open(path, "w", encoding="ascii", newline="") as file:
        file.write(HEAD)
        for text in paragraphs:
            file.write(PARAGRAPH + runs_of(rng, text) + r"{\rtlch\fcs1 \af0 \ltrch\fcs0 \insrsid%d \par }" % rng.randrange(10**7))
        file.write("}")


def runs_of(rng, text):
    """Runs of about 46 characters, some of which end in one that is not ASCII after a blank."""
    parts, at = [], 0
    while at < len(text):
        length = max(4, int(rng.gauss(46, 12)))
        part = text[at : at + length]
        extra = rng.choice((r"\'e9", r"\u8211\'96", "", "", ""))
        if not part.endswith(" ") or part.endswith("the "):
            extra = ""
        parts.append(r"{\rtlch\fcs1 \af0 \ltrch\fcs0 %s\insrsid%d %s%s}" % (rng.choice(LOOKS), rng.randrange(10**7), part, extra))
        at += length
    return "".join(parts)
