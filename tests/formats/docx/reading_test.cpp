#include "formats/docx/document_builder.h"
#include "package.h"
#include "reader.h"
#include "support/invariants.h"
#include "support/notation.h"

namespace pluvo::docx {
namespace {

struct ReadCase {
  std::string body;  ///< in the shorthand of wml()
  const char* text;  ///< in the notation of the tests
};

/// What a search reads is what an edit does, so far as a search asks for it.
void expectTheSameForSearch(const base::Bytes& document, const document::Story& model) {
  const Package package = openPackage(document);
  const base::Bytes part = package.archive.read(*package.archive.find(package.mainPart));
  const Styles styles = readStyles(package);
  const document::Story read(
      readBody(part.view, package.mainPart, styles, document::Purpose::search).content);
  ASSERT_EQ(read.text().substring(0, read.length()), model.text().substring(0, model.length()));
  for (Position i = 0; i < read.length(); ++i) {
    EXPECT_EQ(read.visibility().valueAt(i), model.visibility().valueAt(i)) << i;
    EXPECT_EQ(read.structure().valueAt(i).field, model.structure().valueAt(i).field) << i;
    EXPECT_EQ(read.endsParagraph(i), model.endsParagraph(i)) << i;
  }
}

void expectTexts(const std::vector<ReadCase>& cases) {
  for (const ReadCase& c : cases) {
    SCOPED_TRACE(c.body);
    const base::Bytes document = documentOf(wml(c.body));
    const Opened opened = open(document);
    EXPECT_EQ(notation::print(opened.model), c.text);
    EXPECT_EQ(notation::damageOf(opened.model), "");
    expectTheSameForSearch(document, opened.model);
  }
}

TEST(Reading, textIsWhatStandsInRuns) {
  expectTexts({{"{[a][<b/>|b]}{}<p/>{[c]}", "ab¶¶¶c¶"},
               {"{<r><t> a b </t><t xml:space='preserve'> c </t></r>}", "a b c ¶"},
               {"<sdt xml:space='preserve'><sdtContent>{<r><t>one </t><t xml:space='default'> t "
                "</t></r>}</sdtContent>"
                "</sdt>{<r xml:space='preserve'><t> a </t></r><r><t> b </t></r>}",
                "one t¶ a b¶"},
               {"{[a\r\nb\nc&#13;d\te]}", "a b c d\te¶"},
               {"{<r><t>&amp;&lt;&#x41;&#128512;<![CDATA[<&>]]><!--no-->é€😀</t></r>}", "&\\<A😀\\<&\\>é€😀¶"},
               {"{<r><t>a</t><tab/><ptab/><br/><cr/><br type='page'/><br "
                "type='column'/><noBreakHyphen/><softHyphen/><lastRenderedPageBreak/><t>\u00A0</t></r>}",
                "a\t\t\v\v\f\x0E\x1E\x1F\xC2\xA0¶"},
               {"{<r><sym font='Wingdings' char='F0FC'/><sym char='000D'/><sym/></r>}", "\xEF\x83\xBC((¶"},
               {"{<r><footnoteReference id='2'/><endnoteReference id='2'/><commentReference id='0'/></r>}",
                "\x02\x02<h:\x05>¶"},
               {"{<r><drawing><wp:inline/></drawing><drawing> "
                "<wp:anchor/></drawing><pict/><object/></r><m:oMath><m:r><m:t>x</m:t></m:r></m:oMath>}",
                "\x01\x08\x01\x01\x01¶"},
               {"{[shown][<vanish/>|hidden][<vanish val='0'/>|not]}", "shown<h:hidden>not¶"},
               {"{[<vanish/>|h]<m:oMath/>}", "<h:h>\x01¶"},
               {"{[<highlight val='yellow'/>|y][<highlight val='none'/>|n][<highlight val='darkGreen'/>|g]}",
                "<7:y>n<11:g>¶"},
               {"", "¶"},
               {"text outside [runs]{is<t>no</t>[text]}", "text¶"}});
}

TEST(Reading, runsLikeTheOnesBeforeThem) {
  expectTexts(
      {{"{[<vanish/>|a][b][<vanish/>|c][d][<vanish/>|e][f]}{[<vanish/>|g][h]}", "<h:a>b<h:c>d<h:e>f¶<h:g>h¶"},
       {"{<r><t> a </t></r><r><t> b </t></r><r><t> c </t></r>}<sdt xml:space='preserve'><sdtContent>{<r><t> "
        "a "
        "</t></r><r><t> b </t></r><r><t> c </t></r>}</sdtContent></sdt>",
        "abc¶ a  b  c ¶"},
       {"{[a][b][c][d&amp;e][f][é€😀][g][h<!--no-->i][j]<r><t/></r><r/>[k][l]<r><tab/></r>[m][n]}",
        "abcd&ef"
        "é€😀"
        "ghijkl\tmn¶"},
       {"{<r><t>a</t></r><r><t>b</t></r><r xmlns:q='urn:q'><t>c</t></r><r xmlns:q='urn:q'><t>d</t></r>"
        "<r><t>e</t></r>}",
        "abcde¶"},
       {"{[a][b][c]<del>[d][e][f]</del>[g]}", "abc<d:def>g¶"},
       {"{[a]}{[b]}{[c]}{<hyperlink>[d]</hyperlink>}{[e]}<T><tc>{[f]}{[g]}{[h]}</tc></T>{[i]}{[j]}",
        "a¶b¶c¶d¶e¶⟦f¶g¶h¦‖⟧i¶j¶"},
       {"{<pPr><sectPr/></pPr>[a]}{<pPr><sectPr/></pPr>[b]}{<pPr><sectPr/></pPr>[c]}{[d]}", "a§b§c§d¶"},
       {"{[a b]}{<pPr><jc/></pPr><r><t> c </t></r>}{<pPr><jc/></pPr><r><t> d </t></r>}<customXml xml:space="
        "'preserve'>{<pPr><jc/></pPr><r><t> e </t></r>}{<pPr><jc/></pPr><r><t> f </t></r>}</customXml>",
        "a b¶c¶d¶ e ¶ f ¶"},
       {"{[a]}{[b &amp; c]}{[é€😀]}{[<vanish/>|d]}{[e]}{[<vanish/>|f]}{[g]}{^[h]@i@%[j]$}{[k]}",
        "a¶b & c¶é€😀¶<h:d>¶e¶<h:f>¶g¶{hi|j}¶k¶"}});
}

TEST(Reading, seesThroughWhatHoldsRuns) {
  expectTexts(
      {{"{<hyperlink "
        "r:id='rId9'>[link]</hyperlink><smartTag><smartTagPr/>[tag]</smartTag><bdo>[b]</bdo><dir>[d]</dir>}",
        "linktagbd¶"},
       {"{<ins id='1'>[in]</ins><del id='2'><r><delText>out</delText></r></del><moveFrom "
        "id='3'>[from]</moveFrom><moveTo id='4'>[to]</moveTo>}",
        "in<d:outfrom>to¶"},
       {"<sdt><sdtPr><rPr><vanish/></rPr></sdtPr><sdtContent>{<sdt><sdtContent>[x]</sdtContent></sdt>}</"
        "sdtContent></sdt><customXml>{[y]}</customXml>",
        "x¶y¶"},
       {"{<r><pict><txbxContent>{[box]}</txbxContent></pict></r><new:x>[z]</new:x>}", "\x01¶"},
       {"{<r><A><mc:Choice "
        "Requires='wps'><drawing><wp:anchor/></drawing></mc:Choice><mc:Fallback><pict/></mc:Fallback></A></"
        "r>}",
        "\x08¶"},
       {"{<r><A><mc:Choice "
        "Requires='new'><new:smile/></mc:Choice><mc:Fallback><t>:)</t></mc:Fallback></A></r>}",
        ":)¶"},
       {"{<r><rPr/><ruby><rubyPr/><rt>[guide]</rt><rubyBase>[<b/>|ba]<del "
        "id='1'>[s]</del>[e]</rubyBase></ruby></r>}",
        "ba<d:s>e¶"},
       {"{[<vanish/>|a]<r><rPr><vanish/></rPr><ruby><rubyBase>[b]</rubyBase></ruby></r>}", "<h:ab>¶"},
       {"{<r><t>a</t><ruby><rubyBase>[b]</rubyBase></ruby></r><r><ruby><rubyBase>[b]</rubyBase></ruby><t>c</"
        "t></r>}",
        "a\x01\x01"
        "c¶"},
       {"{<A><mc:Choice Requires='w14 w15'>[yes]</mc:Choice><mc:Choice "
        "Requires='wps'>[too]</mc:Choice><mc:Fallback>[no]</mc:Fallback></A>}",
        "yes¶"}});
}

TEST(Reading, fieldsOfBothKinds) {
  expectTexts({{"{[a]^@PAGE@%[1]$[b]}", "a{PAGE|1}b¶"},
               {"{<fldSimple instr=' DATE &quot;d&quot; '>[today]</fldSimple><fldSimple instr='X'/>}",
                "{ DATE \"d\" |today}{X|}¶"},
               {"{^@IF @^@A@%[1]$%[yes]}{[more]$[!]}", "{IF{A|1}|yes¶more}!¶"},
               {"{$%@lost@[x]^@XE@$}", "x{XE}¶"}});
}

TEST(Reading, tablesEndTheirCellsAndRows) {
  expectTexts(
      {{"{[a]}<T><trPr/><tc>{[1]}{[2]}</tc><tc>{}</tc></tr><tr><trPr/><tc>{[3]}</tc></T>{[b]}",
        "a¶⟦1¶2¦¦‖3¦‖⟧b¶"},
       {"<T><trPr/><tc><T><trPr/><tc>{[in]}</tc></T>{[out]}</tc></T>", "⟦⟦in¦‖⟧out¦‖⟧¶"},
       {"<T><trPr/><tc><T><trPr/><tc>{[in]}</tc></T></tc></T>{}", "⟦⟦in¦‖⟧¦‖⟧¶"},
       {"<tbl><tblPr/><tblGrid/><sdt><sdtContent><tr><trPr/><sdt><sdtContent><tc><sdt><sdtContent>{[x]}</"
        "sdtContent></sdt></tc></sdtContent></sdt></tr></sdtContent></sdt><tr><trPr/></tr></tbl>{}",
        "⟦x¦‖⟧¶"},
       {"<T><trPr/><tc/><tc><tcPr><vMerge/></tcPr>{}</tc></T>{}", "⟦¦¦‖⟧¶"}});
}

TEST(Reading, aParagraphWithASectionEndsIt) {
  const std::string section = "<w:pPr><w:sectPr/></w:pPr>";
  expectTexts({{"{<pPr><sectPr/></pPr>[a]}{[b]}<sectPr/>", "a§b¶"},
               {"{[a]}{<pPr><sectPr/></pPr>}", "a¶¶"},
               {"{<pPr><sectPr/></pPr>}<T><trPr/><tc>{<pPr><sectPr/></pPr>[x]}</tc></T>{}", "§⟦x¦‖⟧¶"}});
}

/// What LibreOffice reads otherwise: libreoffice.py's differences come from these.
TEST(Reading, whereAnotherProgramDiffers) {
  expectTexts({
      // A merged cell's covered part has text of its own; there it is left out.
      {"<T><trPr/><tc><tcPr><vMerge/></tcPr>{[covered]}</tc></T>{}", "⟦covered¦‖⟧¶"},
      // Results are what the file says; there dates, names and pages are worked out anew.
      {"{<fldSimple instr='DATE'>[3 March]</fldSimple>}", "{DATE|3 March}¶"},
      {"{<fldSimple instr='FILENAME'>[old.doc]</fldSimple>}", "{FILENAME|old.doc}¶"},
      // What stands in a field's code is not shown; there a simple field in it shows its result.
      {"{^@TC @<fldSimple instr='SEQ X'>@A@</fldSimple>$[b]}", "{TC{SEQ X|A}}b¶"},
      // Results may be of several paragraphs; there a merge field's is of one, and the mark goes before it.
      {"{[x]^@MERGEFIELD A@%[a]}{[b]$[y]}", "x{MERGEFIELD A|a¶b}y¶"},
      // Alternatives may hold whole paragraphs; there they are lost.
      {"<A><mc:Choice Requires='wps'>{[a]}</mc:Choice><mc:Fallback/></A>{}", "a¶¶"},
      // Frames and floating tables stand where they are anchored; there they are outside the text.
      {"{<pPr><framePr w='9'/></pPr>[frame]}{}", "frame¶¶"},
      {"<tbl><tblPr><tblpPr tblpX='1'/></tblPr><tr><trPr/><tc>{[x]}</tc></tr></tbl>{}", "⟦x¦‖⟧¶"},
      // Breaks in controls for plain text are breaks; there they are lost.
      {"{<sdt><sdtPr><text/></sdtPr><sdtContent><r><t>a</t><br/><t>b</t></r></sdtContent></sdt>}", "a\vb¶"},
  });
}

TEST(Reading, stylesHide) {
  const std::string styles =
      wml("<styles xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>"
          "<style type='paragraph' styleId='P'><rPr><vanish/></rPr></style>"
          "<style type='character' styleId='C'><basedOn val='B'/></style>"
          "<style type='character' styleId='B'><basedOn val='C'/><rPr><vanish/></rPr></style>"
          "<style type='character' styleId='L'><basedOn val='L'/></style></styles>");
  const std::string body =
      wml("{[a][<rStyle val='C'/>|b][<rStyle val='L'/>|c]}"
          "{<pPr><pStyle val='P'/></pPr>[d][<rStyle val='C'/>|e][<vanish val='false'/>|f]}");
  const base::Bytes document = documentOf(body + body, {{"word/styles.xml", styles}});
  const Opened opened = open(document);
  EXPECT_EQ(notation::print(opened.model), "a<h:b>c¶<h:d>ef<h:¶>a<h:b>c¶<h:d>ef<h:¶>");
  expectTheSameForSearch(document, opened.model);
}

TEST(Reading, anyPrefixAndNamespace) {
  const std::string strict = "http://purl.oclc.org/ooxml/wordprocessingml/main";
  const std::string xml = "<document xmlns=\"" + strict + "\" xmlns:q=\"" + strict +
                          "\"><body><p><r><rPr><highlight q:val=\"red\"/></rPr><t>é</t></r></p>"
                          "<q:p><q:r><q:t>b</q:t></q:r></q:p></body></document>";
  EXPECT_EQ(notation::print(open(documentOf("", {{"word/document.xml", xml}})).model), "<6:é>¶b¶");
}

}  // namespace
}  // namespace pluvo::docx
