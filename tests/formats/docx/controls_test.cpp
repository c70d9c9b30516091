#include "base/utf.h"
#include "control_properties.h"
#include "errors/fault.h"
#include "formats/docx/edit_cases.h"

#include <gmock/gmock.h>

namespace pluvo::docx {
namespace {

std::string control(const std::string& properties, const std::string& content) {
  return "<sdt><sdtPr>" + properties + "</sdtPr><sdtContent>" + content + "</sdtContent></sdt>";
}

const std::string kText = "<text/>";
const std::string kLines = "<text multiLine='1'/>";

TEST(Controls, ofPlainTextTakeLineBreaks) {
  const std::string broken = "<r><t>a</t><br/><t>b</t></r>";
  const auto cell = [](const std::string& properties, const std::string& content) {
    return "<T>" + control(properties, "<tc>{" + content + "}</tc>") + "</T>{}";
  };
  const auto row = [](const std::string& properties, const std::string& content) {
    return "<tbl><tblPr/><tblGrid/>" + control(properties, "<tr><tc>{" + content + "}</tc></tr>") +
           "</tbl>{}";
  };
  const auto block = [](const std::string& properties, const std::string& content) {
    return control(properties, "{" + content + "}") + "{[c]}";
  };
  const auto inlined = [](const std::string& properties, const std::string& content) {
    return "{" + control(properties, content) + "}";
  };
  for (const auto& place :
       {std::function(cell), std::function(row), std::function(block), std::function(inlined)}) {
    expectBodies(
        {{place(kText, "[ab]"), before(u"b", u"\r"), place(kLines, broken)},
         {place("<text multiLine='on'/>", "[ab]"), before(u"b", u"\r"),
          place("<text multiLine='on'/>", broken)},
         {place(kText, "[ab]"), replace(u"b", u"\v"), place(kLines, "<r><t>a</t><br/></r>")},
         {place("<date fullDate='2020'><lid val='x'/></date>", "[ab]"), before(u"b", u"\r"),
          place("<date><lid val='x'/></date>", broken)},
         {place("<comboBox lastValue='1'/>", "[ab]"), before(u"b", u"\r"), place("<comboBox/>", broken)},
         {place("<dropDownList/>", "[ab]"), before(u"b", u"\r"), place("<dropDownList/>", broken)}});
  }
}

TEST(Controls, areNotDividedByMarks) {
  expectBodies(
      {{"{" + control("<id val='5'/>", "[ab]") + "}", before(u"b", u"\r"),
        "{" + control("<id val='5'/>", "<r><t>a</t><br/><t>b</t></r>") + "}"},
       {control("", "{[ab]}") + "{}", before(u"b", u"\r"), control("", "{[a]}{[b]}") + "{}"},
       // A mark that comes in the place of the control's own ends its paragraph.
       {control(kText, "{[ab]}") + "{[c]}", replace(u"b\r", u"X\r"), control(kText, "{[aX]}") + "{[c]}"},
       {control(kText, "{[ab]}") + "{[c]}", replace(u"b\r", u"X\rY"), control(kText, "{[aX]}") + "{[Y][c]}"},
       {control(kText, "{[ab]}") + "{[c]}", replace(u"b\r", u"X\rY\r"),
        control(kLines, "{<r><t>aX</t><br/><t>Y</t></r>}") + "{[c]}"},
       // Whole paragraphs beside a control stay outside.
       {"{[a]}" + control(kText, "{[b]}") + "{}", after(u"a\r", u"X\r"),
        "{[a]}{[X]}" + control(kText, "{[b]}") + "{}"},
       {"{[a]}" + control(kText, "{[b]}") + "{}", both(after(u"a\r", u"X\r"), after(u"X\r", u"Y\r")),
        "{[a]}{[X]}{[Y]}" + control(kText, "{[b]}") + "{}"},
       {control(kText, "{[a]}") + "{[b]}", after(u"a\r", u"X\r"), control(kText, "{[a]}") + "{[X]}{[b]}"},
       {"{<r><t>a</t><br/></r>}" + control(kText, "{[b]}") + "{}", remove(u"\r"),
        control(kLines, "{<r><t>a</t><br/></r>[b]}") + "{}"}});
}

TEST(Controls, sayNothingThatTheirTextDenies) {
  const std::string look = "<rStyle val='PlaceholderText'/>";
  const std::string bound =
      "<alias val='t'/><showingPlcHdr/><dataBinding xpath='/'/><w15:dataBinding/><text/>";
  const std::string inner = control("<showingPlcHdr/>", "[" + look + "|c]");
  expectBodies(
      {{"{" + control(bound, "[ab]") + "}", replace(u"b", u"X"),
        "{" + control("<alias val='t'/><text/>", "[aX]") + "}"},
       {"{" + control(bound, "[ab]") + "}", highlight(u"ab", 7), "{" + control(bound, "[~|ab]") + "}"},
       {control(bound, "{[ab]}{[c]}"), remove(u"b\r"), control("<alias val='t'/><text/>", "{[a][c]}")},
       {"{" + control("<showingPlcHdr/>", "[" + look + "|a][" + look + "<b/>|b]" + inner) + "}",
        replace(u"a", u"X"), "{" + control("", "[X][<b/>|b]" + inner) + "}"},
       {control("<showingPlcHdr/>", "{<pPr><rPr>" + look + "</rPr></pPr>[" + look + "|a]}") + "{}",
        after(u"a", u"X"), control("", "{<pPr></pPr>[aX]}") + "{}"},
       {"{" + control("<dropDownList lastValue='1'><listItem value='1'/></dropDownList>", "[ab]") + "}",
        replace(u"b", u"X"),
        "{" + control("<dropDownList><listItem value='1'/></dropDownList>", "[aX]") + "}"}});
}

TEST(Controls, whosePlaceholdersHaveALookOfAnotherName) {
  const std::string styles =
      wml("<styles xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>"
          "<style styleId='Platzhalter'><name val='Placeholder Text'/></style></styles>");
  const std::string body = "{" + control("<showingPlcHdr/>", "[<rStyle val='Platzhalter'/>|ab]") + "}";
  Opened opened = open(documentOf(wml(body), {{"word/styles.xml", styles}}));
  replace(u"b", u"X")(opened);
  EXPECT_EQ(bodyOf(opened.written()), wml("{" + control("", "[aX]") + "}"));
}

/// However the number is written, a copy goes without it.
TEST(Controls, giveTheirNumberToNoCopy) {
  const std::pair<const char*, const char*> cases[] = {
      {"<w:sdtPr><w:id w:val=\"5\"/><w:text/></w:sdtPr>", "<w:sdtPr><w:text/></w:sdtPr>"},
      {"<w:sdtPr><w:text/><w:id\tw:val=\"5\"/></w:sdtPr>", "<w:sdtPr><w:text/></w:sdtPr>"},
      {"<w:sdtPr><w:id\r\nw:val='5'></w:id></w:sdtPr> ", "<w:sdtPr></w:sdtPr> "},
      {"<w:sdtPr><!--<w:id w:val=\"1\"/>--><w:ids/><w:id/></w:sdtPr><w:sdtEndPr><w:id/></w:sdtEndPr>",
       "<w:sdtPr><!--<w:id w:val=\"1\"/>--><w:ids/></w:sdtPr><w:sdtEndPr><w:id/></w:sdtEndPr>"}};
  for (const auto& [before, after] : cases) EXPECT_EQ(withoutIdentity(before), after);
}

TEST(Controls, thatAreLockedRefuse) {
  const char* const kContents = "contents are locked";
  const char* const kDeletion = "locked against deletion";
  const auto locked = [](const std::string& lock, const std::string& content) {
    return control("<lock val='" + lock + "'/>", content);
  };
  const auto inlined = [&](const std::string& lock) { return "{[x]" + locked(lock, "[abc]") + "[y]}{[z]}"; };
  const auto block = [&](const std::string& lock) {
    return "{[x]}" + locked(lock, "{[abc]" + control("", "[d]") + "}") + "{[y]}";
  };
  const struct {
    std::string body;
    Edit edit;
    const char* refusal;
  } cases[] = {{inlined("contentLocked"), replace(u"b", u"X"), kContents},
               {inlined("contentLocked"), replace(u"b", u"b"), nullptr},
               {inlined("contentLocked"), before(u"b", u"X"), kContents},
               {inlined("contentLocked"), highlight(u"xa", 7), kContents},
               {inlined("contentLocked"), highlight(u"x", 7), nullptr},
               {inlined("contentLocked"), replace(u"xa", u"X"), kContents},
               {inlined("contentLocked"), replace(u"abc", u"X"), kContents},
               {inlined("contentLocked"), remove(u"abc"), nullptr},
               {inlined("contentLocked"), replace(u"xabcy", u"X"), nullptr},
               {inlined("contentLocked"), replace(u"y", u"X"), nullptr},
               {inlined("sdtContentLocked"), remove(u"b"), kContents},
               {inlined("sdtContentLocked"), remove(u"xabcy"), kDeletion},
               {inlined("sdtLocked"), remove(u"xabcy"), kDeletion},
               {inlined("sdtLocked"), remove(u"abc"), kDeletion},
               {inlined("sdtLocked"), replace(u"abc", u"X"), nullptr},
               {inlined("sdtLocked"), remove(u"ab"), nullptr},
               {inlined("unlocked"), remove(u"abc"), nullptr},
               {block("sdtContentLocked"), replace(u"d", u"X"), kContents},
               {block("sdtContentLocked"), remove(u"x\r"), nullptr},
               {block("sdtContentLocked"), replace(u"x\r", u"X"), kContents},
               {block("sdtContentLocked"), replace(u"\r", u"X\r"), nullptr},
               {block("sdtContentLocked"), after(u"x\r", u"X"), kContents},
               {block("sdtContentLocked"), after(u"x\r", u"X\r"), nullptr},
               {block("sdtLocked"), remove(u"abcd"), nullptr},
               {block("sdtLocked"), remove(u"abcd\r"), kDeletion},
               {block("sdtLocked"), replace(u"abcd\r", u"X\r"), nullptr},
               {block("sdtLocked"), remove(u"d\r"), kDeletion},
               {block("sdtLocked"), replace(u"bcd\ry", u"X"), kDeletion},
               {block("sdtLocked"), replace(u"bcd\ry", u"X\rY"), nullptr},
               {locked("sdtLocked", "{[a]}{[bc]}") + "{[y]}", remove(u"c\ry"), nullptr},
               {locked("sdtLocked", "{[a]}{[bc]}") + "{[y]}", remove(u"\rbc\ry"), kDeletion}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.body);
    Opened opened = open(documentOf(wml(c.body)));
    const std::string before = notation::print(opened.model);
    std::string said;
    try {
      c.edit(opened);
    } catch (const errors::Fault& fault) {
      said = base::utf8(fault.description);
      EXPECT_EQ(notation::print(opened.model), before);
    }
    if (c.refusal == nullptr) {
      EXPECT_EQ(said, "");
      EXPECT_EQ(notation::print(open(opened.written()).model), notation::print(opened.model));
    } else {
      EXPECT_THAT(said, testing::HasSubstr(c.refusal));
    }
  }
}

TEST(Guides, goWithTheLastOfTheirText) {
  const auto guided = [](const std::string& base) {
    return "<r><rPr/><ruby><rubyPr/><rt>[g]</rt><rubyBase>" + base + "</rubyBase></ruby></r>";
  };
  expectBodies(
      {{"{[x]" + guided("[abc]") + "[y]}", replace(u"b", u"X"), "{[x]" + guided("[aXc]") + "[y]}"},
       {"{[x]" + guided("[abc]") + "[y]}", before(u"b", u"\r"),
        "{[x]" + guided("<r><t>a</t><br/><t>bc</t></r>") + "[y]}"},
       {"{[x]" + guided("[abc]") + "[y]}", highlight(u"b", 7), "{[x]" + guided("[a][~|b][c]") + "[y]}"},
       {"{[x]" + guided("[abc]") + "[y]}", replace(u"bcy", u"X"), "{[x]" + guided("[a]") + "[X]}"},
       {"{[x]" + guided("[<b/>|abc]") + "[y]}", replace(u"abc", u"X"), "{[x][<b/>|X][y]}"},
       {"{[x]" + guided("[abc]") + "[y]}", remove(u"abc"), "{[x][y]}"},
       {"{[x]" + guided("[abc]") + "[y]}", before(u"a", u"1\r2"), "{[x][1]}{[2]" + guided("[abc]") + "[y]}"},
       {"{" + guided("[abc]") + "[y]}", after(u"c", u"X"), "{" + guided("[abc]") + "[X][y]}"},
       {"{<del id='1'>" + guided("<r><delText>ab</delText></r>") + "</del>}", replace(u"ab", u"N"),
        "{<del id='1'><r><delText>N</delText></r></del>}"}});
}

/// Blanks that are no text stay where they are, and no text.
TEST(Blanks, thatNothingPreservesStayInTheFile) {
  const auto t = [](const std::string& text) { return "{<r><t>" + text + "</t></r>}"; };
  expectBodies({{t(" a b\n"), replace(u"b", u"X"), t(" a X\n")},
                {t("\r\n  ab "), after(u"b", u"c"), t("\r\n  abc ")},
                {t(" ab "), highlight(u"b", 7), "{<r><t> a</t></r><r><rPr>~</rPr><t>b </t></r>}"},
                {t(" a b "), remove(u"a"), "{<r><t> </t><t xml:space=\"preserve\"> b</t><t> </t></r>}"},
                {t(" ab "), replace(u"b", u"\t"), "{<r><t> a</t><tab/><t> </t></r>}"},
                {"{<r xml:space=\"preserve\"><t> a b</t></r>}", replace(u"b", u"X"),
                 "{<r xml:space=\"preserve\"><t xml:space=\"preserve\"> a X</t></r>}"}});
}

}  // namespace
}  // namespace pluvo::docx
