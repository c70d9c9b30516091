#include "documents/docx/document_builder.h"
#include "documents/docx/package_check.h"
#include "documents/support/invariants.h"
#include "documents/support/notation.h"

#include <functional>

namespace pluvo::docx {
namespace {

using Edit = std::function<void(Opened&)>;
using text::Span;
using text::View;

Edit replace(std::u16string what, std::u16string with, View view = View::results) {
  return [=](Opened& o) { o.model.replace(o.find(what), with, view); };
}
Edit remove(std::u16string what) { return replace(std::move(what), u""); }
Edit before(std::u16string what, std::u16string put) {
  return [=](Opened& o) { o.model.insertBefore(o.find(what).from, put); };
}
Edit behind(std::u16string what, std::u16string put) {
  return [=](Opened& o) { o.model.insertBehind(o.find(what).to, put); };
}
Edit highlight(std::u16string what, std::uint8_t colour) {
  return [=](Opened& o) { o.model.highlight(o.find(what), colour); };
}
Edit both(Edit first, Edit second) {
  return [=](Opened& o) {
    first(o);
    second(o);
  };
}

struct EditCase {
  std::string body;
  Edit edit;
  std::string after;
};

/// Edits, writes, compares the body's bytes, and reads the result again.
void expectBodies(const std::vector<EditCase>& cases) {
  for (const EditCase& c : cases) {
    SCOPED_TRACE(c.body);
    const files::Bytes document = documentOf(c.body);
    Opened opened = open(document);
    c.edit(opened);
    const files::Bytes written = opened.written();
    EXPECT_EQ(bodyOf(written), c.after);
    EXPECT_EQ(notation::print(open(written).model), notation::print(opened.model));
    EXPECT_EQ(worsened(faultsOf(document), faultsOf(written)), "");
  }
}

const std::string kYellow = "<w:highlight w:val=\"yellow\"/>";
const std::string kBold = "<w:rPr><w:b/></w:rPr>";

std::string tc(std::string_view content) { return "<w:tc>" + std::string(content) + "</w:tc>"; }
std::string tbl(std::string_view cells) {
  return "<w:tbl><w:tblPr/><w:tblGrid/><w:tr>" + std::string(cells) + "</w:tr></w:tbl>";
}
std::string fld(std::string_view type) {
  return "<w:r><w:fldChar w:fldCharType=\"" + std::string(type) + "\"/></w:r>";
}
std::string instr(std::string_view code) {
  return "<w:r><w:instrText>" + std::string(code) + "</w:instrText></w:r>";
}

TEST(Editing, newTextTakesTheRunOfItsNeighbour) {
  expectBodies({
      {p(run("one ", "<w:b/>") + run("two", "<w:i/>")), before(u"two", u"new "),
       p(run("one ", "<w:b/>") + run("new two", "<w:i/>"))},
      {p(run("one ", "<w:b/>") + run("two", "<w:i/>")), behind(u"one ", u"new "),
       p(run("one new ", "<w:b/>") + run("two", "<w:i/>"))},
      {p(run("one ", "<w:b/>") + run("two", "<w:i/>")), replace(u"ne tw", u"X"),
       p(run("oX", "<w:b/>") + run("o", "<w:i/>"))},
      {p(run("a &amp; b")), replace(u"b", u"<\"&\">"), p(run("a &amp; &lt;\"&amp;\"&gt;"))},
      {p(run("ab")), replace(u"b", u"\t\v\f\x0E\x1E\x1F\xA0"),
       p("<w:r><w:t>a</w:t><w:tab/><w:br/><w:br w:type=\"page\"/><w:br w:type=\"column\"/><w:noBreakHyphen/>"
         "<w:softHyphen/><w:t>\xC2\xA0</w:t></w:r>")},
      {p("<w:r><w:t>a</w:t><w:tab/><w:lastRenderedPageBreak/><w:t>b</w:t></w:r>"), before(u"b", u"c"),
       p("<w:r><w:t>a</w:t><w:tab/><w:lastRenderedPageBreak/><w:t>cb</w:t></w:r>")},
      {p("<w:r><w:t>a</w:t><w:tab/></w:r>"), behind(u"\t", u"c"),
       p("<w:r><w:t>a</w:t><w:tab/><w:t>c</w:t></w:r>")},
      {p("<w:pPr><w:rPr><w:ins w:id=\"1\"/><w:b/></w:rPr></w:pPr>"), before(u"\r", u"x"),
       p("<w:pPr><w:rPr><w:ins w:id=\"1\"/><w:b/></w:rPr></w:pPr><w:r>" + kBold + "<w:t>x</w:t></w:r>")},
      {"<w:p w:rsidR=\"1\"/>", before(u"\r", u"x"), "<w:p w:rsidR=\"1\"><w:r><w:t>x</w:t></w:r></w:p>"},
      {"", before(u"\r", u"x"), "<w:p><w:r><w:t>x</w:t></w:r></w:p>"},
  });
}

TEST(Editing, textBesideAReferenceLooksLikeTheTextBeforeIt) {
  const std::string reference =
      "<w:r><w:rPr><w:vertAlign w:val=\"superscript\"/></w:rPr><w:footnoteReference w:id=\"1\"/></w:r>";
  expectBodies({
      {p(run("a", "<w:i/>") + reference + run("b")), behind(u"\x02", u"X"),
       p(run("a", "<w:i/>") + reference + run("X", "<w:i/>") + run("b"))},
      {p(reference + run("b")), before(u"\x02", u"X"), p(run("X") + reference + run("b"))},
      {p(run("a", "<w:i/>") + reference), replace(u"\x02", u"X"), p(run("a", "<w:i/>") + run("X", "<w:i/>"))},
  });
}

TEST(Editing, blanksAreKeptAndEmptyElementsGo) {
  expectBodies({
      {p(run("a b c")), remove(u"a"), p(run(" b c"))},
      {p(run("a ") + run("b", "<w:i/>") + run(" c")), remove(u"b"), p(run("a ") + run(" c"))},
      {p("<w:hyperlink r:id=\"rId1\">" + run("link") + "</w:hyperlink>" + run("x")), remove(u"link"),
       p(run("x"))},
      {p("<w:ins w:id=\"1\">" + run("in") + "</w:ins>" + run("x")), remove(u"in"), p(run("x"))},
      {p("<w:ins w:id=\"1\"><w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + run("in") + "</w:ins>" + run("x") +
         "<w:bookmarkEnd w:id=\"1\"/>"),
       remove(u"in"),
       p("<w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + run("x") + "<w:bookmarkEnd w:id=\"1\"/>")},
      {p("<w:sdt><w:sdtPr><w:id w:val=\"5\"/></w:sdtPr><w:sdtContent>" + run("c") +
         "</w:sdtContent></w:sdt>" + run("x")),
       remove(u"c"), p(run("x"))},
      {p(run("x") + "<w:r><w:drawing><wp:inline/></w:drawing></w:r>" + run("y")), remove(u"\x01"),
       p(run("x") + run("y"))},
      {p(run("x") + "<m:oMath/>" + run("y")), remove(u"x\x01"), p(run("y"))},
      {p("<w:hyperlink w:anchor=\"m\"/><w:r/>" + run("xy")), remove(u"x"),
       p("<w:hyperlink w:anchor=\"m\"/><w:r/>" + run("y"))},
  });
}

TEST(Editing, highlightDividesARunOnlyAtItsEnds) {
  const std::string yellow = "<w:b/>" + kYellow + "<w:lang w:val=\"en\"/>";
  expectBodies({
      {p(run("abc", "<w:b/><w:lang w:val=\"en\"/>")), highlight(u"abc", 7), p(run("abc", yellow))},
      {p(run("abc", "<w:b/><w:lang w:val=\"en\"/>")), highlight(u"b", 7),
       p(run("a", "<w:b/><w:lang w:val=\"en\"/>") + run("b", yellow) +
         run("c", "<w:b/><w:lang w:val=\"en\"/>"))},
      {p("<w:r w:rsidR=\"1\"><w:t>a</w:t><w:tab/></w:r>" + run("bc")), highlight(u"\tb", 11),
       p("<w:r w:rsidR=\"1\"><w:t>a</w:t></w:r><w:r w:rsidR=\"1\"><w:rPr><w:highlight "
         "w:val=\"darkGreen\"/></w:rPr><w:tab/></w:r>"
         "<w:r><w:rPr><w:highlight w:val=\"darkGreen\"/></w:rPr><w:t>b</w:t></w:r>" +
         run("c"))},
      {p(run("ab", kYellow)), highlight(u"a", 0), p(run("a") + run("b", kYellow))},
      {p(run("ab", kYellow)), highlight(u"ab", 7), p(run("ab", kYellow))},
      {p(run("ab")) + p(run("c")), highlight(u"b\rc", 7),
       p("<w:pPr><w:rPr>" + kYellow + "</w:rPr></w:pPr>" + run("a") + run("b", kYellow)) +
           p(run("c", kYellow))},
      {p(run("ab", "<w:rPrChange w:id=\"4\"><w:rPr/></w:rPrChange>")), highlight(u"b", 7),
       p(run("a", "<w:rPrChange w:id=\"4\"><w:rPr/></w:rPrChange>") +
         run("b", kYellow + "<w:rPrChange w:id=\"5\"><w:rPr/></w:rPrChange>"))},
      {p("<w:r><w:footnoteReference w:id=\"2\"/></w:r>"), highlight(u"\x02", 7),
       p("<w:r><w:rPr>" + kYellow + "</w:rPr><w:footnoteReference w:id=\"2\"/></w:r>")},
  });
}

TEST(Editing, trackedChangesKeepTheirWrappers) {
  const auto deleted = [](const std::string& text, int id) {
    return "<w:del w:id=\"" + std::to_string(id) + "\"><w:r><w:delText>" + text +
           "</w:delText></w:r></w:del>";
  };
  expectBodies({
      {p("<w:ins w:id=\"1\">" + run("ab") + "</w:ins>"), before(u"b", u"X"),
       p("<w:ins w:id=\"1\">" + run("aXb") + "</w:ins>")},
      {p(run("x") + deleted("ab", 7)), before(u"b", u"N"),
       p(run("x") + deleted("a", 7) + run("N") + deleted("b", 8))},
      {p(run("x") + deleted("ab", 7)), replace(u"ab", u"N"), p(run("x") + run("N"))},
      {p(deleted("ab", 7)), before(u"b", u"1\r2"),
       p(deleted("a", 7) + run("1")) + p(run("2") + deleted("b", 8))},
      {p(deleted("ab", 7)), highlight(u"b", 7),
       p("<w:del w:id=\"7\"><w:r><w:delText>a</w:delText></w:r><w:r><w:rPr>" + kYellow +
         "</w:rPr><w:delText>b</w:delText></w:r></w:del>")},
  });
}

TEST(Editing, aNewMarkDividesTheParagraph) {
  const std::string centred = "<w:pPr><w:jc w:val=\"center\"/></w:pPr>";
  const std::string section = "<w:sectPr><w:pgSz/></w:sectPr>";
  expectBodies({
      {p(centred + run("ab", "<w:b/>")), before(u"b", u"x\ry"),
       p(centred + run("ax", "<w:b/>")) + p(centred + run("yb", "<w:b/>"))},
      {"<w:p w14:paraId=\"1\" w14:textId=\"2\" w:rsidR=\"3\">" + run("ab") + "</w:p>", before(u"b", u"\r"),
       "<w:p w14:paraId=\"1\" w14:textId=\"2\" w:rsidR=\"3\">" + run("a") + "</w:p><w:p w:rsidR=\"3\">" +
           run("b") + "</w:p>"},
      {p("<w:pPr><w:jc w:val=\"both\"/>" + section + "</w:pPr>" + run("ab")) + p(""), before(u"b", u"\r"),
       p("<w:pPr><w:jc w:val=\"both\"/></w:pPr>" + run("a")) +
           p("<w:pPr><w:jc w:val=\"both\"/>" + section + "</w:pPr>" + run("b")) + p("")},
      {p("<w:hyperlink r:id=\"rId1\">" + run("ab") + "</w:hyperlink>"), before(u"b", u"\r"),
       p("<w:hyperlink r:id=\"rId1\">" + run("a") + "</w:hyperlink>") +
           p("<w:hyperlink r:id=\"rId1\">" + run("b") + "</w:hyperlink>")},
      {p("<w:hyperlink r:id=\"rId1\">" + run("ab") + "</w:hyperlink>"), before(u"a", u"x\r"),
       p("<w:hyperlink r:id=\"rId1\">" + run("x") + "</w:hyperlink>") +
           p("<w:hyperlink r:id=\"rId1\">" + run("ab") + "</w:hyperlink>")},
      {p("<w:sdt><w:sdtPr><w:id w:val=\"5\"/></w:sdtPr><w:sdtContent>" + run("ab") +
         "</w:sdtContent></w:sdt>"),
       before(u"b", u"\r"),
       p("<w:sdt><w:sdtPr><w:id w:val=\"5\"/></w:sdtPr><w:sdtContent>" + run("a") +
         "</w:sdtContent></w:sdt>") +
           p("<w:sdt><w:sdtPr></w:sdtPr><w:sdtContent>" + run("b") + "</w:sdtContent></w:sdt>")},
      {p(run("a")) + p(centred + run("b")), behind(u"a\r", u"x\r"),
       p(run("a")) + p("<w:r><w:t>x</w:t></w:r>") + p(centred + run("b"))},
      {p(run("a")) + p(centred + run("b")), behind(u"a\r", u"x"),
       p(run("a")) + p(centred + run("x") + run("b"))},
      {"<w:p/>", before(u"\r", u"1\r2\r"), p(run("1")) + p(run("2")) + p("")},
  });
}

TEST(Editing, aDeletedMarkMergesIntoTheLaterParagraph) {
  const std::string centred = "<w:pPr><w:jc w:val=\"center\"/></w:pPr>";
  expectBodies({
      {p(run("ab", "<w:b/>")) + p(centred + run("cd")), remove(u"b\rc"),
       p(centred + run("a", "<w:b/>") + run("d"))},
      {p(run("ab")) + p(run("x")) + p(centred + run("cd")), replace(u"b\rx\rc", u"1\r2"),
       p(run("a1")) + p(centred + run("2") + run("d"))},
      {p("<w:pPr><w:sectPr/></w:pPr>" + run("ab")) + p(run("cd")), remove(u"b\f"), p(run("a") + run("cd"))},
      {p(run("a")) + "<w:p/>" + p(run("b")), remove(u"\r\r"), p(run("a") + run("b"))},
      {p(run("a")) + "<w:sdt><w:sdtContent>" + p(run("b")) + "</w:sdtContent></w:sdt>" + p(run("c")),
       remove(u"b\r"), p(run("a")) + p(run("c"))},
      {p("<w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + run("ab")) + "<w:bookmarkEnd w:id=\"1\"/>" +
           p(run("c")),
       remove(u"b\r"),
       p("<w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + run("a") + "<w:bookmarkEnd w:id=\"1\"/>" + run("c"))},
      {p(run("a")) + p(run("b")), remove(u"a\rb"), p("")},
  });
}

TEST(Editing, tablesGoWholeOrKeepTheirMarks) {
  const std::string table = tbl(tc(p(run("1")) + p(run("2"))) + tc(p(run("3"))));
  expectBodies({
      {p(run("ab")) + table + p(run("cd")), remove(u"b\r1\r2\a3\a\ac"), p(run("a") + run("d"))},
      {p(run("ab")) + table + p(run("cd")), replace(u"b\r1\r2\a3\a\ac", u"X\rY"),
       p(run("aX")) + p(run("Y") + run("d"))},
      {table + p(run("c")), replace(u"1\r2\a3\a\a", u"X"), p(run("X") + run("c"))},
      {p(run("ab")) + table + p(run("c")), remove(u"b\r1\r2"),
       p(run("a")) + tbl(tc(p("")) + tc(p(run("3")))) + p(run("c"))},
      {table + p(run("cd")), remove(u"3\a\ac"), tbl(tc(p(run("1")) + p(run("2"))) + tc(p(""))) + p(run("d"))},
      {tbl(tc(p(run("x")) + table + p(run("y")))) + p(""), remove(u"1\r2\a3\a\ay"),
       tbl(tc(p(run("x")) + p(""))) + p("")},
      {p(run("a")) + table + p(""), behind(u"a", u"\rb"), p(run("a")) + p(run("b")) + table + p("")},
      {p(run("a")) + table + p(""), behind(u"a\r", u"b\r"), p(run("a")) + p(run("b")) + table + p("")},
      {tbl(tc("")) + p(""), before(u"\a", u"x"), tbl(tc(p(run("x")))) + p("")},
      {p(run("ab")) + tbl("<w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + tc(p(run("1")))) + p(run("c")) +
           "<w:bookmarkEnd w:id=\"1\"/>",
       remove(u"1\a\a"),
       p(run("ab")) + p("<w:bookmarkStart w:id=\"1\" w:name=\"m\"/>" + run("c")) +
           "<w:bookmarkEnd w:id=\"1\"/>"},
  });
}

TEST(Editing, fieldsKeepTheirMarksUnlessTheyGoWhole) {
  const std::string field = fld("begin") + instr("PAGE") + fld("separate") + run("12") + fld("end");
  const std::string simple = "<w:fldSimple w:instr=\"PAGE\">" + run("12") + "</w:fldSimple>";
  expectBodies({
      {p(run("a") + field + run("b")),
       remove(u"a\x13PAGE\x14"
              u"12\x15"
              u"b"),
       p("")},
      {p(run("ab") + field + run("cd")),
       remove(u"b\x13PAGE\x14"
              u"1"),
       p(run("a") + fld("begin") + instr("PAGE") + fld("separate") + run("2") + fld("end") + run("cd"))},
      {p(run("a") + simple + run("b")),
       remove(u"\x13PAGE\x14"
              u"12\x15"),
       p(run("a") + run("b"))},
      {p(run("a") + simple), replace(u"12", u"X"),
       p(run("a") + "<w:fldSimple w:instr=\"PAGE\">" + run("X") + "</w:fldSimple>")},
      {p(field), before(u"2", u"\r"),
       p(fld("begin") + instr("PAGE") + fld("separate") + run("1")) + p(run("2") + fld("end"))},
      {p(fld("begin") + instr("IF") + field + fld("separate") + run("no") + fld("end")), before(u"2", u"3"),
       p(fld("begin") + instr("IF") + fld("begin") + instr("PAGE") + fld("separate") +
         "<w:r><w:t>1</w:t><w:instrText>3</w:instrText><w:t>2</w:t></w:r>" + fld("end") + fld("separate") +
         run("no") + fld("end"))},
      {p(simple), before(u"2", u"\r"),
       p(fld("begin") + instr("PAGE") + fld("separate") + run("1")) + p(run("2") + fld("end"))},
      {p(simple), [](Opened& o) { o.model.replace(o.find(u"E"), u"ES", View::codes); },
       p(fld("begin") + instr("PAG") + instr("ES") + fld("separate") + run("12") + fld("end"))},
      {p(field), [](Opened& o) { o.model.replace(o.find(u"E"), u"ES", View::codes); },
       p(fld("begin") + instr("PAGES") + fld("separate") + run("12") + fld("end"))},
  });
}

TEST(Editing, alternativesNotChosenDoNotKeepTheOldText) {
  const std::string choice = "<mc:Choice Requires=\"w14\">" + run("ab") + "</mc:Choice>";
  const std::string fallback = "<mc:Fallback>" + run("old") + "</mc:Fallback>";
  const auto alternatives = [](const std::string& inner) {
    return "<mc:AlternateContent>" + inner + "</mc:AlternateContent>";
  };
  const std::string smile =
      "<w:r><mc:AlternateContent><mc:Choice "
      "Requires=\"new\"><new:x/></mc:Choice><mc:Fallback><w:t>:)</w:t></mc:Fallback>"
      "</mc:AlternateContent></w:r>";
  expectBodies({
      {p(alternatives(choice + fallback)), replace(u"b", u"X"),
       p(alternatives("<mc:Choice Requires=\"w14\">" + run("aX") + "</mc:Choice>"))},
      {p(run("x") + alternatives(choice + fallback)), remove(u"ab"), p(run("x"))},
      {p(alternatives(choice + fallback) + run("x")), replace(u"x", u"y"),
       p(alternatives(choice + fallback) + run("y"))},
      {p(run("x") + smile), remove(u":)"), p(run("x"))},
      {p(smile), replace(u")", u"("), p(run(":("))},
  });
}

TEST(Editing, aControlWhoseTextChangesIsNoLongerBound) {
  const std::string content = "<w:sdtContent>" + run("ab") + "</w:sdtContent></w:sdt>";
  const std::string bound =
      "<w:sdt><w:sdtPr><w:alias w:val=\"t\"/><w:showingPlcHdr/><w:dataBinding "
      "w:xpath=\"/\"/><w15:dataBinding/><w:text/></w:sdtPr>";
  expectBodies({
      {p(bound + content), replace(u"b", u"X"),
       p("<w:sdt><w:sdtPr><w:alias w:val=\"t\"/><w:text/></w:sdtPr><w:sdtContent>" + run("aX") +
         "</w:sdtContent></w:sdt>")},
      {p(bound + content), highlight(u"ab", 7),
       p(bound + "<w:sdtContent>" + run("ab", kYellow) + "</w:sdtContent></w:sdt>")},
      {bound + "<w:sdtContent>" + p(run("ab")) + p(run("c")) + "</w:sdtContent></w:sdt>", remove(u"b\r"),
       "<w:sdt><w:sdtPr><w:alias w:val=\"t\"/><w:text/></w:sdtPr><w:sdtContent>" + p(run("a") + run("c")) +
           "</w:sdtContent></w:sdt>"},
  });
}

TEST(Editing, bookmarksInDeletedTextGoUnlessSomethingRefersToThem) {
  const std::string start = "<w:bookmarkStart w:id=\"1\" w:name=\"here\"/>";
  const std::string end = "<w:bookmarkEnd w:id=\"1\"/>";
  const std::string reference =
      fld("begin") + instr(" REF here \\h ") + fld("separate") + run("r") + fld("end");
  expectBodies({
      {p(run("a") + start + run("b") + end + run("c")), remove(u"ab"), p(run("c"))},
      {p(run("ab") + start + end + run("cd")), remove(u"bc"), p(run("a") + run("d"))},
      {p(run("a") + start + run("bc") + end), remove(u"ab"), p(start + run("c") + end)},
      {p(run("a") + start + run("b") + end + reference), remove(u"ab"), p(start + end + reference)},
      {p(run("a") + start + run("b") + end + "<w:hyperlink w:anchor=\"here\">" + run("l") + "</w:hyperlink>"),
       remove(u"ab"), p(start + end + "<w:hyperlink w:anchor=\"here\">" + run("l") + "</w:hyperlink>")},
      {p(start + run("a")) + p(run("b")) + p(run("c") + end), remove(u"a\rb\rc"), p("")},
  });
}

TEST(Editing, aBookmarkThatAHeaderRefersToStays) {
  const std::string body = p(run("a") + "<w:bookmarkStart w:id=\"1\" w:name=\"Title\"/>" + run("b") +
                             "<w:bookmarkEnd w:id=\"1\"/>");
  Opened opened = open(documentOf(
      body, {{"word/_rels/document.xml.rels", relationships({{"header", "header1.xml"}})},
             {"word/header1.xml", headerOf(fld("begin") + instr(" REF ti") + instr("tle ") + fld("end"))}}));
  remove(u"ab")(opened);
  EXPECT_EQ(bodyOf(opened.written()),
            p("<w:bookmarkStart w:id=\"1\" w:name=\"Title\"/><w:bookmarkEnd w:id=\"1\"/>"));
}

TEST(Editing, aFormulaIsHighlightedInItsRunsAndOperators) {
  const auto formula = [](const std::string& run, const std::string& operators) {
    return p("<m:oMath><m:f><m:fPr><m:ctrlPr>" + operators +
             "</m:ctrlPr></m:fPr><m:num><m:r><m:rPr><m:sty/></m:rPr>" + run +
             "<m:t>x</m:t></m:r></m:num><m:den/></m:f></m:oMath>");
  };
  const std::string yellow = "<w:rPr>" + kYellow + "</w:rPr>";
  const std::string boldYellow = "<w:rPr><w:b/>" + kYellow + "</w:rPr>";
  expectBodies({
      {formula("", kBold), highlight(u"\x01", 7), formula(yellow, boldYellow)},
      {formula(yellow, boldYellow), highlight(u"\x01", 7), formula(yellow, boldYellow)},
      {formula(yellow, boldYellow), highlight(u"\x01", 0), formula("", kBold)},
  });
}

TEST(Editing, aCharacterOfTwoUnitsIsNotCut) {
  Opened opened = open(documentOf(p(run("x😀y"))));
  highlight(u"\xDE00y", 7)(opened);
  EXPECT_EQ(bodyOf(opened.written()), p(run("x😀") + run("y", kYellow)));
  replace(u"\xDE00", u"z")(opened);
  EXPECT_THROW(opened.written(), files::DocumentError);
}

TEST(Editing, severalEditsInOneRun) {
  expectBodies({
      {p(run("abcdef")), both(replace(u"b", u"1"), both(remove(u"d"), highlight(u"e", 7))),
       p(run("a1c") + run("e", kYellow) + run("f"))},
      {p(run("abc")), both(before(u"b", u"\r"), before(u"c", u"\r")),
       p(run("a")) + p(run("b")) + p(run("c"))},
      {p(run("abc")), both(replace(u"abc", u"xyz"), highlight(u"y", 7)),
       p(run("x") + run("y", kYellow) + run("z"))},
      {p(run("abc")), both(replace(u"b", u"XY"), both(remove(u"XY"), before(u"c", u"Z"))), p(run("aZc"))},
  });
}

}  // namespace
}  // namespace pluvo::docx
