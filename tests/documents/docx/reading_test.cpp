#include "documents/docx/document_builder.h"
#include "documents/support/invariants.h"
#include "documents/support/notation.h"

namespace pluvo::docx {
namespace {

struct ReadCase {
  std::string body;
  const char* text;  ///< in the notation of the tests
};

void expectTexts(const std::vector<ReadCase>& cases) {
  for (const ReadCase& c : cases) {
    SCOPED_TRACE(c.body);
    const Opened opened = open(documentOf(c.body));
    EXPECT_EQ(notation::print(opened.model), c.text);
    EXPECT_EQ(notation::damageOf(opened.model), "");
  }
}

std::string tc(std::string_view content) { return "<w:tc>" + std::string(content) + "</w:tc>"; }
std::string tbl(std::string_view content) {
  return "<w:tbl><w:tblPr/><w:tblGrid/>" + std::string(content) + "</w:tbl>";
}
std::string tr(std::string_view content) { return "<w:tr><w:trPr/>" + std::string(content) + "</w:tr>"; }
std::string fld(std::string_view type) {
  return "<w:r><w:fldChar w:fldCharType=\"" + std::string(type) + "\"/></w:r>";
}
std::string instr(std::string_view code) {
  return "<w:r><w:instrText>" + std::string(code) + "</w:instrText></w:r>";
}

TEST(Reading, textIsWhatStandsInRuns) {
  expectTexts({
      {p(run("a") + run("b", "<w:b/>")) + p("") + "<w:p/>" + p(run("c")), "ab¶¶¶c¶"},
      {p("<w:r><w:t> a b </w:t><w:t xml:space=\"preserve\"> c </w:t></w:r>"), "a b c ¶"},
      {p("<w:r><w:t>a\r\nb\nc&#13;d\te</w:t></w:r>"), "a b c d\te¶"},
      {p("<w:r><w:t>&amp;&lt;&#x41;&#128512;<![CDATA[<&>]]><!--no-->é€😀</w:t></w:r>"), "&\\<A😀\\<&\\>é€😀¶"},
      {p("<w:r><w:t>a</w:t><w:tab/><w:ptab/><w:br/><w:cr/><w:br w:type=\"page\"/><w:br w:type=\"column\"/>"
         "<w:noBreakHyphen/><w:softHyphen/><w:lastRenderedPageBreak/><w:t>\xC2\xA0</w:t></w:r>"),
       "a\t\t\v\v\f\x0E\x1E\x1F\xC2\xA0¶"},
      {p("<w:r><w:sym w:font=\"Wingdings\" w:char=\"F0FC\"/><w:sym w:char=\"000D\"/><w:sym/></w:r>"),
       "\xEF\x83\xBC((¶"},
      {p("<w:r><w:footnoteReference w:id=\"2\"/><w:endnoteReference w:id=\"2\"/><w:commentReference "
         "w:id=\"0\"/></w:r>"),
       "\x02\x02<h:\x05>¶"},
      {p("<w:r><w:drawing><wp:inline/></w:drawing><w:drawing> "
         "<wp:anchor/></w:drawing><w:pict/><w:object/></w:r>"
         "<m:oMath><m:r><m:t>x</m:t></m:r></m:oMath>"),
       "\x01\x08\x01\x01\x01¶"},
      {p(run("shown") + run("hidden", "<w:vanish/>") + run("not", "<w:vanish w:val=\"0\"/>")),
       "shown<h:hidden>not¶"},
      {p(run("h", "<w:vanish/>") + "<m:oMath/>"), "<h:h>\x01¶"},
      {p(run("y", "<w:highlight w:val=\"yellow\"/>") + run("n", "<w:highlight w:val=\"none\"/>") +
         run("g", "<w:highlight w:val=\"darkGreen\"/>")),
       "<7:y>n<11:g>¶"},
      {"", "¶"},
      {"text outside <w:r><w:t>runs</w:t></w:r>" + p("is<w:t>no</w:t>" + run("text")), "text¶"},
  });
}

TEST(Reading, seesThroughWhatHoldsRuns) {
  expectTexts({
      {p("<w:hyperlink r:id=\"rId9\">" + run("link") + "</w:hyperlink><w:smartTag><w:smartTagPr/>" +
         run("tag") + "</w:smartTag><w:bdo>" + run("b") + "</w:bdo><w:dir>" + run("d") + "</w:dir>"),
       "linktagbd¶"},
      {p("<w:ins w:id=\"1\">" + run("in") +
         "</w:ins><w:del w:id=\"2\"><w:r><w:delText>out</w:delText></w:r></w:del>"
         "<w:moveFrom w:id=\"3\">" +
         run("from") + "</w:moveFrom><w:moveTo w:id=\"4\">" + run("to") + "</w:moveTo>"),
       "inoutfromto¶"},
      {"<w:sdt><w:sdtPr><w:rPr><w:vanish/></w:rPr></w:sdtPr><w:sdtContent>" +
           p("<w:sdt><w:sdtContent>" + run("x") + "</w:sdtContent></w:sdt>") +
           "</w:sdtContent></w:sdt><w:customXml>" + p(run("y")) + "</w:customXml>",
       "x¶y¶"},
      {p("<w:r><w:pict><w:txbxContent>" + p(run("box")) + "</w:txbxContent></w:pict></w:r><new:x>" +
         run("z") + "</new:x>"),
       "\x01¶"},
      {p("<w:r><mc:AlternateContent><mc:Choice "
         "Requires=\"wps\"><w:drawing><wp:anchor/></w:drawing></mc:Choice>"
         "<mc:Fallback><w:pict/></mc:Fallback></mc:AlternateContent></w:r>"),
       "\x08¶"},
      {p("<w:r><mc:AlternateContent><mc:Choice Requires=\"new\"><new:smile/></mc:Choice>"
         "<mc:Fallback><w:t>:)</w:t></mc:Fallback></mc:AlternateContent></w:r>"),
       ":)¶"},
      {p("<mc:AlternateContent><mc:Choice Requires=\"w14 w15\">" + run("yes") +
         "</mc:Choice><mc:Choice Requires=\"wps\">" + run("too") + "</mc:Choice><mc:Fallback>" + run("no") +
         "</mc:Fallback></mc:AlternateContent>"),
       "yes¶"},
  });
}

TEST(Reading, fieldsOfBothKinds) {
  expectTexts({
      {p(run("a") + fld("begin") + instr("PAGE") + fld("separate") + run("1") + fld("end") + run("b")),
       "a{PAGE|1}b¶"},
      {p("<w:fldSimple w:instr=\" DATE &quot;d&quot; \">" + run("today") +
         "</w:fldSimple><w:fldSimple w:instr=\"X\"/>"),
       "{ DATE \"d\" |today}{X|}¶"},
      {p(fld("begin") + instr("IF ") + fld("begin") + instr("A") + fld("separate") + run("1") + fld("end") +
         fld("separate") + run("yes")) +
           p(run("more") + fld("end") + run("!")),
       "{IF{A|1}|yes¶more}!¶"},
      {p(fld("end") + fld("separate") + instr("lost") + run("x") + fld("begin") + instr("XE") + fld("end")),
       "x{XE}¶"},
  });
}

TEST(Reading, tablesEndTheirCellsAndRows) {
  expectTexts({
      {p(run("a")) + tbl(tr(tc(p(run("1")) + p(run("2"))) + tc(p(""))) + tr(tc(p(run("3"))))) + p(run("b")),
       "a¶⟦1¶2¦¦‖3¦‖⟧b¶"},
      {tbl(tr(tc(tbl(tr(tc(p(run("in"))))) + p(run("out"))))), "⟦⟦in¦‖⟧out¦‖⟧¶"},
      {tbl(tr(tc(tbl(tr(tc(p(run("in")))))))) + p(""), "⟦⟦in¦‖⟧¦‖⟧¶"},
      {tbl("<w:sdt><w:sdtContent>" +
           tr("<w:sdt><w:sdtContent>" +
              tc("<w:sdt><w:sdtContent>" + p(run("x")) + "</w:sdtContent></w:sdt>") +
              "</w:sdtContent></w:sdt>") +
           "</w:sdtContent></w:sdt>" + tr("")) +
           p(""),
       "⟦x¦‖⟧¶"},
      {tbl(tr("<w:tc/>" + tc("<w:tcPr><w:vMerge/></w:tcPr>" + p("")))) + p(""), "⟦¦¦‖⟧¶"},
  });
}

TEST(Reading, aParagraphWithASectionEndsIt) {
  const std::string section = "<w:pPr><w:sectPr/></w:pPr>";
  expectTexts({
      {p(section + run("a")) + p(run("b")) + "<w:sectPr/>", "a§b¶"},
      {p(run("a")) + p(section), "a¶¶"},
      {p(section) + tbl(tr(tc(p(section + run("x"))))) + p(""), "§⟦x¦‖⟧¶"},
  });
}

/// What LibreOffice reads otherwise: the sweep's differences come from these.
TEST(Reading, whereAnotherProgramDiffers) {
  expectTexts({
      // A merged cell's covered part has text of its own; there it is left out.
      {tbl(tr(tc("<w:tcPr><w:vMerge/></w:tcPr>" + p(run("covered"))))) + p(""), "⟦covered¦‖⟧¶"},
      // Results are what the file says; there dates, names and pages are worked out anew.
      {p("<w:fldSimple w:instr=\"DATE\">" + run("3 March") + "</w:fldSimple>"), "{DATE|3 March}¶"},
      {p("<w:fldSimple w:instr=\"FILENAME\">" + run("old.doc") + "</w:fldSimple>"), "{FILENAME|old.doc}¶"},
      // What stands in a field's code is not shown; there a simple field in it shows its result.
      {p(fld("begin") + instr("TC ") + "<w:fldSimple w:instr=\"SEQ X\">" + instr("A") + "</w:fldSimple>" +
         fld("end") + run("b")),
       "{TC{SEQ X|A}}b¶"},
      // Results may be of several paragraphs; there a merge field's is of one, and the mark goes before it.
      {p(run("x") + fld("begin") + instr("MERGEFIELD A") + fld("separate") + run("a")) +
           p(run("b") + fld("end") + run("y")),
       "x{MERGEFIELD A|a¶b}y¶"},
      // Alternatives may hold whole paragraphs; there they are lost.
      {"<mc:AlternateContent><mc:Choice Requires=\"wps\">" + p(run("a")) +
           "</mc:Choice><mc:Fallback/></mc:AlternateContent>" + p(""),
       "a¶¶"},
      // Frames and floating tables stand where they are anchored; there they are outside the text.
      {p("<w:pPr><w:framePr w:w=\"9\"/></w:pPr>" + run("frame")) + p(""), "frame¶¶"},
      {"<w:tbl><w:tblPr><w:tblpPr w:tblpX=\"1\"/></w:tblPr>" + tr(tc(p(run("x")))) + "</w:tbl>" + p(""),
       "⟦x¦‖⟧¶"},
      // Breaks in controls for plain text are breaks; there they are lost.
      {p("<w:sdt><w:sdtPr><w:text/></w:sdtPr><w:sdtContent><w:r><w:t>a</w:t><w:br/><w:t>b</w:t></w:r>"
         "</w:sdtContent></w:sdt>"),
       "a\vb¶"},
  });
}

TEST(Reading, stylesHide) {
  const std::string styles =
      "<w:styles xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
      "<w:style w:type=\"paragraph\" w:styleId=\"P\"><w:rPr><w:vanish/></w:rPr></w:style>"
      "<w:style w:type=\"character\" w:styleId=\"C\"><w:basedOn w:val=\"B\"/></w:style>"
      "<w:style w:type=\"character\" w:styleId=\"B\"><w:basedOn "
      "w:val=\"C\"/><w:rPr><w:vanish/></w:rPr></w:style>"
      "<w:style w:type=\"character\" w:styleId=\"L\"><w:basedOn w:val=\"L\"/></w:style></w:styles>";
  const std::string byStyle = "<w:rStyle w:val=\"C\"/>";
  const std::string body = p(run("a") + run("b", byStyle) + run("c", "<w:rStyle w:val=\"L\"/>")) +
                           p("<w:pPr><w:pStyle w:val=\"P\"/></w:pPr>" + run("d") + run("e", byStyle) +
                             run("f", "<w:vanish w:val=\"false\"/>"));
  const Opened opened = open(documentOf(body, {{"word/styles.xml", styles}}));
  EXPECT_EQ(notation::print(opened.model), "a<h:b>c¶<h:d>ef<h:¶>");
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
