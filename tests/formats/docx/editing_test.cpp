#include "formats/docx/document_builder.h"
#include "formats/docx/edit_cases.h"
#include "formats/docx/package_check.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <functional>

namespace pluvo::docx {
namespace {

TEST(Editing, newTextTakesTheRunOfItsNeighbour) {
  expectBodies({{"{[<b/>|one ][<i/>|two]}", before(u"two", u"new "), "{[<b/>|one ][<i/>|new two]}"},
                {"{[<b/>|one ][<i/>|two]}", after(u"one ", u"new "), "{[<b/>|one new ][<i/>|two]}"},
                {"{[<b/>|one ][<i/>|two]}", replace(u"ne tw", u"X"), "{[<b/>|oX][<i/>|o]}"},
                {"{[a &amp; b]}", replace(u"b", u"<\"&\">"), "{[a &amp; &lt;\"&amp;\"&gt;]}"},
                // Two texts that come together do not end a CDATA section.
                {"{<r><t>a]x]>b</t></r>}", remove(u"x"), "{<r><t>a]]&gt;b</t></r>}"},
                // Other letters stay the bytes they are, also where a colour begins or ends among them.
                {"{[пря мо 租金𝒜>ок]}", remove(u"мо "), "{[пря 租金𝒜>ок]}"},
                {"{[für 租金𝒜𝒜 да]}", highlight(u"金𝒜", 7), "{[für 租][~|金𝒜][𝒜 да]}"},
                {"{[ab]}", replace(u"b", u"\t\v\f\x0E\x1E\x1F\xA0"),
                 "{<r><t>a</t><tab/><br/><br type='page'/><br "
                 "type='column'/><noBreakHyphen/><softHyphen/><t>\u00A0</t></r>}"},
                {"{<r><t>a</t><tab/><lastRenderedPageBreak/><t>b</t></r>}", before(u"b", u"c"),
                 "{<r><t>a</t><tab/><lastRenderedPageBreak/><t>cb</t></r>}"},
                {"{<r><t>a</t><tab/></r>}", after(u"\t", u"c"), "{<r><t>a</t><tab/><t>c</t></r>}"},
                {"{<pPr><rPr><ins id='1'/><b/></rPr></pPr>}", before(u"\r", u"x"),
                 "{<pPr><rPr><ins id='1'/><b/></rPr></pPr>[<b/>|x]}"},
                {"<p rsidR='1'/>", before(u"\r", u"x"), "<p rsidR='1'>[x]</p>"},
                {"", before(u"\r", u"x"), "{[x]}"}});
}

TEST(Editing, textBesideAReferenceLooksLikeTheTextBeforeIt) {
  expectBodies({{"{[<i/>|a]_[b]}", after(u"\x02", u"X"), "{[<i/>|a]_[<i/>|X][b]}"},
                {"{_[b]}", before(u"\x02", u"X"), "{[X]_[b]}"},
                {"{[<i/>|a]_}", replace(u"\x02", u"X"), "{[<i/>|a][<i/>|X]}"}},
               {{'_', "<r><rPr><vertAlign val='superscript'/></rPr><footnoteReference id='1'/></r>"}});
}

TEST(Editing, blanksAreKeptAndEmptyElementsGo) {
  expectBodies(
      {{"{[a b c]}", remove(u"a"), "{[ b c]}"},
       {"{[a ][<i/>|b][ c]}", remove(u"b"), "{[a ][ c]}"},
       {"{<hyperlink r:id='rId1'>[link]</hyperlink>[x]}", remove(u"link"), "{[x]}"},
       {"{<ins id='1'>[in]</ins>[x]}", remove(u"in"), "{[x]}"},
       {"{<ins id='1'><bookmarkStart id='1' name='m'/>[in]</ins>[x]<bookmarkEnd id='1'/>}", remove(u"in"),
        "{<bookmarkStart id='1' name='m'/>[x]<bookmarkEnd id='1'/>}"},
       {"{<sdt><sdtPr><id val='5'/></sdtPr><sdtContent>[c]</sdtContent></sdt>[x]}", remove(u"c"), "{[x]}"},
       {"{[x]<r><drawing><wp:inline/></drawing></r>[y]}", remove(u"\x01"), "{[x][y]}"},
       {"{[x]<m:oMath/>[y]}", remove(u"x\x01"), "{[y]}"},
       {"{<hyperlink anchor='m'/><r/>[xy]}", remove(u"x"), "{<hyperlink anchor='m'/><r/>[y]}"}});
}

TEST(Editing, highlightDividesARunOnlyAtItsEnds) {
  expectBodies({{"{[<b/>_|abc]}", highlight(u"abc", 7), "{[<b/>~_|abc]}"},
                {"{[<b/>_|abc]}", highlight(u"b", 7), "{[<b/>_|a][<b/>~_|b][<b/>_|c]}"},
                {"{<r rsidR='1'><t>a</t><tab/></r>[bc]}", highlight(u"\tb", 11),
                 "{<r rsidR='1'><t>a</t></r><r rsidR='1'><rPr><highlight "
                 "val='darkGreen'/></rPr><tab/></r>[<highlight val='darkGreen'/>|b][c]}"},
                {"{[~|ab]}", highlight(u"a", 0), "{[a][~|b]}"},
                {"{[~|ab]}", highlight(u"ab", 7), "{[~|ab]}"},
                {"{[ab]}{[c]}", highlight(u"b\rc", 7), "{<pPr><rPr>~</rPr></pPr>[a][~|b]}{[~|c]}"},
                {"{[<rPrChange id='4'><rPr/></rPrChange>|ab]}", highlight(u"b", 7),
                 "{[<rPrChange id='4'><rPr/></rPrChange>|a][~<rPrChange id='5'><rPr/></rPrChange>|b]}"},
                {"{<r><footnoteReference id='2'/></r>}", highlight(u"\x02", 7),
                 "{<r><rPr>~</rPr><footnoteReference id='2'/></r>}"}},
               {{'_', "<lang val='en'/>"}});
}

TEST(Editing, highlightStandsWhereTheSchemaWantsIt) {
  const std::string old = "<rPrChange id='1'><rPr><highlight val='red'/></rPr></rPrChange>";
  expectBodies(
      {{"{<r><rPr/><t>a</t></r>}", highlight(u"a", 7), "{[~|a]}"},
       {"{[<b/><sz val='24'/><u val='single'/>|a]}", highlight(u"a", 7),
        "{[<b/><sz val='24'/>~<u val='single'/>|a]}"},
       {"{[<lang val='en'/>" + old + "|a]}", highlight(u"a", 7), "{[~<lang val='en'/>" + old + "|a]}"},
       {"{[<!--a>b--><i/>~<w14:x/>|a]}", highlight(u"a", 0), "{[<!--a>b--><i/><w14:x/>|a]}"},
       {"{[<szCs val='1'/><w14:glow><w14:a/></w14:glow>|a]}", highlight(u"a", 7),
        "{[<szCs val='1'/>~<w14:glow><w14:a/></w14:glow>|a]}"},
       {"{<pPr><keepNext/><rPr><ins id='2'/></rPr><sectPr/></pPr>[a]}{}", highlight(u"\f", 7),
        "{<pPr><keepNext/><rPr><ins id='2'/>~</rPr><sectPr/></pPr>[a]}{}"},
       {"{<pPr><keepNext/><sectPr/></pPr>[a]}{}", highlight(u"\f", 7),
        "{<pPr><keepNext/><rPr>~</rPr><sectPr/></pPr>[a]}{}"}});
}

TEST(Editing, trackedChangesKeepTheirWrappers) {
  expectBodies({{"{<ins id='1'>[ab]</ins>}", before(u"b", u"X"), "{<ins id='1'>[aXb]</ins>}"},
                {"{<del id='7'>_</del>}", highlight(u"b", 7),
                 "{<del id='7'><r><delText>a</delText></r><r><rPr>~</rPr><delText>b</delText></r></del>}"}},
               {{'_', "<r><delText>ab</delText></r>"}});
}

/// Text put into deleted text, or in its place, is deleted; between a living and a deleted character it
/// lives.
TEST(Editing, textTakesAfterDeletedText) {
  const std::string marked = "<pPr><rPr><del id='6' author='A'/></rPr></pPr>";
  expectBodies(
      {{"{[x]<del id='7'>_</del>[y]}", before(u"b", u"N"),
        "{[x]<del id='7'><r><delText>aNb</delText></r></del>[y]}"},
       {"{[x]<del id='7'>_</del>[y]}", replace(u"ab", u"N"),
        "{[x]<del id='7'><r><delText>N</delText></r></del>[y]}"},
       {"{[x]<del id='7'>_</del>[y]}", before(u"a", u"N"), "{[x][N]<del id='8'>_</del>[y]}"},
       {"{[x]<del id='7'>_</del>[y]}", after(u"b", u"N"), "{[x]<del id='7'>_</del>[N][y]}"},
       {"{<hyperlink anchor='m'>[x]<del id='7'>_</del></hyperlink>}", after(u"b", u"1\r2\r"),
        "{<hyperlink anchor='m'>[x]<del id='7'>_</del>[1]</hyperlink>}{<hyperlink "
        "anchor='m'>[2]</hyperlink>}{}"},
       {"{[x]<del id='7'>_</del>[y]}", replace(u"xa", u"N"),
        "{[N]<del id='7'><r><delText>b</delText></r></del>[y]}"},
       {"{[x]<del id='7'>_</del>[y]}", replace(u"by", u"N"),
        "{[x]<del id='7'><r><delText>a</delText></r></del>[N]}"},
       {"{<del id='7' author='A'>_</del>}", before(u"b", u"1\r2"),
        "{<pPr><rPr><del id='8' author='A'/></rPr></pPr><del id='7' "
        "author='A'><r><delText>a1</delText></r></del>}"
        "{<del id='9' author='A'><r><delText>2b</delText></r></del>}"},
       {"{" + marked + "<del id='7'>_</del>}{[y]}", before(u"\r", u"N"),
        "{" + marked + "<del id='7'>_</del><del id='8' author='A'><r><delText>N</delText></r></del>}{[y]}"},
       {"{[x]}{" + marked + "<del id='7'>_</del>}{<del id='8'>_</del>}", after(u"ab\r", u"N\r"),
        "{[x]}{" + marked +
            "<del id='7'>_</del>}{<pPr><rPr><del id='10' author='A'/></rPr></pPr>"
            "<del id='9' author='A'><r><delText>N</delText></r></del>}{<del id='8'>_</del>}"},
       {"{<moveFrom id='7'>[ab]</moveFrom>}", before(u"b", u"N"), "{<moveFrom id='7'>[aNb]</moveFrom>}"},
       {"{^<del id='7'><r><delInstrText>PAGE</delInstrText></r></del>%[1]$}",
        replace(u"AG", u"X", View::codes),
        "{^<del id='7'><r><delInstrText>PXE</delInstrText></r></del>%[1]$}"}},
      {{'_', "<r><delText>ab</delText></r>"}});
}

TEST(Editing, aNewMarkDividesTheParagraph) {
  expectBodies(
      {{"{_[<b/>|ab]}", before(u"b", u"x\ry"), "{_[<b/>|ax]}{_[<b/>|yb]}"},
       {"<p w14:paraId='1' rsidR=\">\" w14:textId='2'>[ab]</p>", before(u"b", u"\r"),
        "<p w14:paraId='1' rsidR=\">\" w14:textId='2'>[a]</p><p rsidR=\">\">[b]</p>"},
       {"{<pPr><jc val='both'/>+</pPr>[ab]}{}", before(u"b", u"\r"),
        "{<pPr><jc val='both'/><rPr><b/></rPr></pPr>[a]}{<pPr><jc val='both'/>+</pPr>[b]}{}"},
       {"{<pPr><sectPr/></pPr>[ab]}{}", before(u"b", u"\r"), "{[a]}{<pPr><sectPr/></pPr>[b]}{}"},
       {"{<pPr><rPr><vanish/><sz/></rPr></pPr>[ab]}", before(u"b", u"\r"),
        "{<pPr><rPr><sz/></rPr></pPr>[a]}{<pPr><rPr><vanish/><sz/></rPr></pPr>[b]}"},
       {"{<pPr><rPr><b/><sz/></rPr></pPr>[<vanish/>|ab]}", before(u"b", u"\r"),
        "{<pPr><rPr><b/><vanish/><sz/></rPr></pPr>[<vanish/>|a]}{<pPr><rPr><b/><sz/></rPr></pPr>[<vanish/"
        ">|b]}"},
       {"{<hyperlink r:id='rId1'>[ab]</hyperlink>}", before(u"b", u"\r"),
        "{<hyperlink r:id='rId1'>[a]</hyperlink>}{<hyperlink r:id='rId1'>[b]</hyperlink>}"},
       {"{<hyperlink r:id='rId1'>[ab]</hyperlink>}", before(u"a", u"x\r"),
        "{<hyperlink r:id='rId1'>[x]</hyperlink>}{<hyperlink r:id='rId1'>[ab]</hyperlink>}"},
       {"{[a]}{_[b]}", after(u"a\r", u"x\r"), "{[a]}{[x]}{_[b]}"},
       {"{[a]}{_[b]}", after(u"a\r", u"x"), "{[a]}{_[x][b]}"},
       {"<p/>", before(u"\r", u"1\r2\r"), "{[1]}{[2]}{}"}},
      {{'_', "<pPr><jc val='center'/></pPr>"},
       {'+', "<rPr><ins id='1'/><b/></rPr><sectPr><pgSz/></sectPr><pPrChange id='2'><pPr/></pPrChange>"}});
}

TEST(Editing, aDeletedMarkMergesIntoTheLaterParagraph) {
  expectBodies({{"{[<b/>|ab]}{_[cd]}", remove(u"b\rc"), "{_[<b/>|a][d]}"},
                {"{[ab]}{[x]}{_[cd]}", replace(u"b\rx\rc", u"1\r2"), "{[a1]}{_[2][d]}"},
                {"{<pPr><sectPr/></pPr>[ab]}{[cd]}", remove(u"b\f"), "{[a][cd]}"},
                {"{[a]}<p/>{[b]}", remove(u"\r\r"), "{[a][b]}"},
                {"{[a]}<sdt><sdtContent>{[b]}</sdtContent></sdt>{[c]}", remove(u"b\r"), "{[a]}{[c]}"},
                {"{<bookmarkStart id='1' name='m'/>[ab]}<bookmarkEnd id='1'/>{[c]}", remove(u"b\r"),
                 "{<bookmarkStart id='1' name='m'/>[a]<bookmarkEnd id='1'/>[c]}"},
                {"{[a]}{[b]}", remove(u"a\rb"), "{}"}},
               {{'_', "<pPr><jc val='center'/></pPr>"}});
}

TEST(Editing, tablesGoWholeOrKeepTheirMarks) {
  expectBodies({{"{[ab]}_{[cd]}", remove(u"b\r1\r2\a3\a\ac"), "{[a][d]}"},
                {"{[ab]}_{[cd]}", replace(u"b\r1\r2\a3\a\ac", u"X\rY"), "{[aX]}{[Y][d]}"},
                {"_{[c]}", replace(u"1\r2\a3\a\a", u"X"), "{[X][c]}"},
                {"{[ab]}_{[c]}", remove(u"b\r1\r2"), "{[a]}<T><tc>{}</tc><tc>{[3]}</tc></T>{[c]}"},
                {"_{[cd]}", remove(u"3\a\ac"), "<T><tc>{[1]}{[2]}</tc><tc>{}</tc></T>{[d]}"},
                {"<T><tc>{[x]}_{[y]}</tc></T>{}", remove(u"1\r2\a3\a\ay"), "<T><tc>{[x]}{}</tc></T>{}"},
                {"{[a]}_{}", after(u"a", u"\rb"), "{[a]}{[b]}_{}"},
                {"{[a]}_{}", after(u"a\r", u"b\r"), "{[a]}{[b]}_{}"},
                {"<T><tc></tc></T>{}", before(u"\a", u"x"), "<T><tc>{[x]}</tc></T>{}"},
                {"{[ab]}<T><bookmarkStart id='1' name='m'/><tc>{[1]}</tc></T>{[c]}<bookmarkEnd id='1'/>",
                 remove(u"1\a\a"), "{[ab]}{<bookmarkStart id='1' name='m'/>[c]}<bookmarkEnd id='1'/>"}},
               {{'_', "<T><tc>{[1]}{[2]}</tc><tc>{[3]}</tc></T>"}});
}

TEST(Editing, fieldsKeepTheirMarksUnlessTheyGoWhole) {
  expectBodies({
      {"{[a]^@PAGE@%[12]$[b]}", remove(u"a\x13PAGE\02412\025b"), "{}"},
      {"{[ab]^@PAGE@%[12]$[cd]}", remove(u"b\x13PAGE\0241"), "{[a]^@PAGE@%[2]$[cd]}"},
      {"{[a]<fldSimple instr='PAGE'>[12]</fldSimple>[b]}", remove(u"\x13PAGE\02412\x15"), "{[a][b]}"},
      {"{[a]<fldSimple instr='PAGE'>[12]</fldSimple>}", replace(u"12", u"X"),
       "{[a]<fldSimple instr='PAGE'>[X]</fldSimple>}"},
      {"{^@PAGE@%[12]$}", before(u"2", u"\r"), "{^@PAGE@%[1]}{[2]$}"},
      {"{^@IF@^@PAGE@%[12]$%[no]$}", before(u"2", u"3"),
       "{^@IF@^@PAGE@%<r><t>1</t><instrText>3</instrText><t>2</t></r>$%[no]$}"},
      {"{<fldSimple instr='PAGE'>[12]</fldSimple>}", before(u"2", u"\r"), "{^@PAGE@%[1]}{[2]$}"},
      {"{<hyperlink anchor='m'><fldSimple instr='PAGE'>[12]</fldSimple></hyperlink>}",
       before(u"2", u"a\rb\r"),
       "{<hyperlink anchor='m'>^@PAGE@%[1a]</hyperlink>}{<hyperlink anchor='m'>[b]</hyperlink>}"
       "{<hyperlink anchor='m'>[2]$</hyperlink>}"},
      {"{<fldSimple instr='PAGE'>[12]</fldSimple>}", replace(u"E", u"ES", View::codes), "{^@PAG@@ES@%[12]$}"},
      {"{^@PAGE@%[12]$}", replace(u"E", u"ES", View::codes), "{^@PAGES@%[12]$}"},
  });
}

TEST(Editing, alternativesNotChosenDoNotKeepTheOldText) {
  expectBodies(
      {{"{<A>_</A>}", replace(u"b", u"X"), "{<A><mc:Choice Requires='w14'>[aX]</mc:Choice></A>}"},
       {"{[x]<A>_</A>}", remove(u"ab"), "{[x]}"},
       {"{<A>_</A>[x]}", replace(u"x", u"y"), "{<A>_</A>[y]}"},
       {"{[x]+}", remove(u":)"), "{[x]}"},
       {"{+}", replace(u")", u"("), "{[:(]}"}},
      {{'_', "<mc:Choice Requires='w14'>[ab]</mc:Choice><mc:Fallback>[old]</mc:Fallback>"},
       {'+',
        "<r><A><mc:Choice Requires='new'><new:x/></mc:Choice><mc:Fallback><t>:)</t></mc:Fallback></A></r>"}});
}

TEST(Editing, bookmarksInDeletedTextGoUnlessSomethingRefersToThem) {
  expectBodies({{"{[a]_[b]+[c]}", remove(u"ab"), "{[c]}"},
                {"{[ab]_+[cd]}", remove(u"bc"), "{[a][d]}"},
                {"{[a]_[bc]+}", remove(u"ab"), "{_[c]+}"},
                {"{[a]_[b]+^@ REF here \\h @%[r]$}", remove(u"ab"), "{_+^@ REF here \\h @%[r]$}"},
                {"{[a]_[b]+<hyperlink anchor='here'>[l]</hyperlink>}", remove(u"ab"),
                 "{_+<hyperlink anchor='here'>[l]</hyperlink>}"},
                {"{_[a]}{[b]}{[c]+}", remove(u"a\rb\rc"), "{}"},
                {"{[?]}_{[b]+[c]}", remove(u"b"), "{[?]}{[c]}"}},
               {{'_', "<bookmarkStart id='1' name='here'/>"},
                {'+', "<bookmarkEnd id='1'/>"},
                {'?', std::string(700, 'x')}});
}

TEST(Editing, aBookmarkThatAHeaderRefersToStays) {
  Opened opened =
      open(documentOf(wml("{[a]<bookmarkStart id='1' name='Title'/>[b]<bookmarkEnd id='1'/>}"),
                      {{"word/_rels/document.xml.rels", relationships({{"header", "header1.xml"}})},
                       {"word/header1.xml", headerOf(wml("^@ REF ti@@tle @$"))}}));
  remove(u"ab")(opened);
  EXPECT_EQ(bodyOf(opened.written()), wml("{<bookmarkStart id='1' name='Title'/><bookmarkEnd id='1'/>}"));
}

TEST(Editing, aFormulaIsHighlightedInItsRunsAndOperators) {
  const auto formula = [](const std::string& yellow, const std::string& run) {
    return "{<m:oMath><m:f><m:fPr><m:ctrlPr><rPr><b/>" + yellow +
           "</rPr></m:ctrlPr></m:fPr><m:num><m:r><m:rPr><m:sty/></m:rPr>" + run +
           "<m:t>x</m:t></m:r></m:num><m:den/></m:f></m:oMath>}";
  };
  const std::string plain = formula("", "");
  const std::string yellow = formula("~", "<rPr>~</rPr>");
  expectBodies({{plain, highlight(u"\x01", 7), yellow},
                {yellow, highlight(u"\x01", 7), yellow},
                {yellow, highlight(u"\x01", 0), plain}});
}

TEST(Editing, aCharacterOfTwoUnitsIsNotCut) {
  Opened opened = open(documentOf(p(run("x😀y"))));
  highlight(u"\xDE00y", 7)(opened);
  EXPECT_EQ(bodyOf(opened.written()), expanded("{[x😀][~|y]}", {}));
}

TEST(Editing, severalEditsInOneRun) {
  expectBodies(
      {{"{[abcdef]}", both(replace(u"b", u"1"), both(remove(u"d"), highlight(u"e", 7))), "{[a1c][~|e][f]}"},
       {"{[abc]}", both(before(u"b", u"\r"), before(u"c", u"\r")), "{[a]}{[b]}{[c]}"},
       {"{[abc]}", both(replace(u"abc", u"xyz"), highlight(u"y", 7)), "{[x][~|y][z]}"},
       {"{[abc]}", both(replace(u"b", u"XY"), both(remove(u"XY"), before(u"c", u"Z"))), "{[aZc]}"}});
}

}  // namespace
}  // namespace pluvo::docx
