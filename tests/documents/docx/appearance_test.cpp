#include "document_builder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace pluvo::docx {
namespace {

constexpr std::string_view kStyles =
    "<w:styles xmlns:w=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
    "<w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"Normal\"><w:name w:val=\"Normal\"/></w:style>"
    "<w:style w:type=\"paragraph\" w:styleId=\"berschrift2\"><w:name w:val=\"heading 2\"/>"
    "<w:basedOn w:val=\"Normal\"/><w:rPr><w:b/></w:rPr></w:style>"
    "<w:style w:type=\"paragraph\" w:styleId=\"Own\"><w:name w:val=\"Own\"/><w:basedOn "
    "w:val=\"berschrift2\"/>"
    "<w:pPr><w:outlineLvl w:val=\"3\"/><w:jc w:val=\"center\"/></w:pPr></w:style>"
    "<w:style w:type=\"character\" w:styleId=\"Strong\"><w:name "
    "w:val=\"Strong\"/><w:rPr><w:b/></w:rPr></w:style>"
    "<w:style w:type=\"paragraph\" w:styleId=\"Loop\"><w:basedOn w:val=\"Loop\"/></w:style>"
    "</w:styles>";

/// A letter a character: b bold, i italic, u underlined, s struck, a digit for a heading, c and e for centred
/// and at the end, r for right to left, "." for none of these; several in brackets.
std::string looksOf(const Opened& opened) {
  const auto map = opened.source->appearance();
  EXPECT_EQ(map.length(), opened.model.length());
  std::string result;
  for (text::Position i = 0; i < map.length(); ++i) {
    const formats::Appearance look = map.valueAt(i);
    std::string said;
    if (look.bold) said += 'b';
    if (look.italic) said += 'i';
    if (look.underlined) said += 'u';
    if (look.struck) said += 's';
    if (look.heading != 0) said += static_cast<char>('0' + look.heading);
    if (look.alignment != formats::Appearance::Alignment::start)
      said += look.alignment == formats::Appearance::Alignment::centre ? 'c' : 'e';
    if (look.rightToLeft) said += 'r';
    if (look.listLevel != 0) said += "l" + std::to_string(look.listLevel);
    if (look.cellWidth != 0) said += "w" + std::to_string(look.cellWidth);
    result += said.empty() ? "." : said.size() == 1 ? said : "(" + said + ")";
  }
  return result;
}

std::string styled(std::string_view style, std::string_view content, std::string_view more = {}) {
  return "<w:p><w:pPr><w:pStyle w:val=\"" + std::string(style) + "\"/>" + std::string(more) + "</w:pPr>" +
         std::string(content) + "</w:p>";
}

TEST(Appearance, IsThatOfRunsAndStyles) {
  const std::string strong = "<w:rStyle w:val=\"Strong\"/>";
  const struct {
    std::string body;
    std::string looks;
  } cases[] = {
      {p(run("a", "<w:b/>") + run("b") + run("c", "<w:i/><w:u w:val=\"single\"/>")), "b.(iu)."},
      {p(run("a", "<w:b w:val=\"0\"/><w:u w:val=\"none\"/><w:dstrike/>")), "s."},
      {styled("berschrift2", run("a") + run("b", "<w:b w:val=\"false\"/>")), "(b2)2(b2)"},
      {styled("Own", run("a")), "(b4c)(b4c)"},
      {styled("Own", run("a"), "<w:jc w:val=\"end\"/><w:outlineLvl w:val=\"9\"/><w:bidi/>"), "(ber)(ber)"},
      {styled("berschrift2", run("a", strong)) + p(run("b", strong)), "2(b2)b."},
      {styled("Loop", run("a")) + styled("NoSuchStyle", run("b")), "...."},
      {"<w:tbl><w:tr><w:tc>" + p(run("a", "<w:b/>")) + "</w:tc><w:tc/></w:tr></w:tbl>" + p(run("b")),
       "b....."},
      {"<w:tbl><w:tblPr/><w:tblGrid><w:gridCol w:w=\"5\"/><w:gridCol w:w=\"7\"/></w:tblGrid>"
       "<w:tr><w:tc>" +
           p(run("a")) + "</w:tc><w:tc><w:tbl><w:tr><w:tc><w:tcPr><w:tcW w:w=\"3\"/></w:tcPr>" + p(run("b")) +
           "</w:tc></w:tr></w:tbl>" + p({}) +
           "</w:tc></w:tr><w:tr><w:tc><w:tcPr><w:gridSpan w:val=\"2\"/></w:tcPr>" + p({}) +
           "</w:tc></w:tr></w:tbl>" + p({}),
       "(w5)(w5)(w3)(w3).(w7).(w12).."},
      {"<w:p><w:pPr><w:numPr><w:ilvl w:val=\"1\"/><w:numId w:val=\"4\"/></w:numPr></w:pPr></w:p>"
       "<w:p><w:pPr><w:numPr><w:numId w:val=\"0\"/></w:numPr></w:pPr></w:p>",
       "(l2)."},
      {p("<w:fldSimple w:instr=\"PAGE\">" + run("1", "<w:i/>") + "</w:fldSimple>"), "......i.."},
  };
  for (const auto& it : cases) {
    EXPECT_EQ(looksOf(open(documentOf(it.body, {{"word/styles.xml", std::string(kStyles)}}))), it.looks)
        << it.body;
  }
}

TEST(Appearance, DoesWithoutStylesThatCannotBeRead) {
  EXPECT_EQ(looksOf(open(documentOf(styled("Own", run("a", "<w:b/>")), {{"word/styles.xml", "<w:styles>"}}))),
            "b.");
}

}  // namespace
}  // namespace pluvo::docx
