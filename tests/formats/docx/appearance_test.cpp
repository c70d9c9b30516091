#include "document_builder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace pluvo::docx {
namespace {

const std::string kStyles =
    wml("<styles xmlns:w='http://schemas.openxmlformats.org/wordprocessingml/2006/main'>"
        "<style type='paragraph' default='1' styleId='Normal'><name val='Normal'/></style>"
        "<style type='paragraph' styleId='berschrift2'><name val='heading 2'/><basedOn val='Normal'/>"
        "<rPr><b/></rPr></style><style type='paragraph' styleId='Own'><name val='Own'/>"
        "<basedOn val='berschrift2'/><pPr><outlineLvl val='3'/><jc val='center'/></pPr></style>"
        "<style type='character' styleId='Strong'><name val='Strong'/><rPr><b/></rPr></style>"
        "<style type='paragraph' styleId='Loop'><basedOn val='Loop'/></style></styles>");

/// A letter a character: b bold, i italic, u underlined, s struck, + inserted, a digit for a heading. c and e
/// are for centred and at the end, r for right to left, "." for none of these. Several stand in brackets.
std::string looksOf(const Opened& opened, std::size_t story = 0) {
  const auto map = opened.source->appearance().at(story);
  EXPECT_EQ(map.length(), opened.document.story(story).length());
  std::string result;
  for (text::Position i = 0; i < map.length(); ++i) {
    const formats::Appearance look = map.valueAt(i);
    std::string said;
    if (look.bold) said += 'b';
    if (look.italic) said += 'i';
    if (look.underlined) said += 'u';
    if (look.struck) said += 's';
    if (look.inserted) said += '+';
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

TEST(Appearance, IsThatOfRunsAndStyles) {
  const std::pair<const char*, const char*> cases[] = {
      {"{[<b/>|a][b][<i/><u val='single'/>|c]}", "b.(iu)."},
      {"{[<b val='0'/><u val='none'/><dstrike/>|a]}", "s."},
      {"{<pPr><pStyle val='berschrift2'/></pPr>[a][<b val='false'/>|b]}", "(b2)2(b2)"},
      {"{<pPr><pStyle val='Own'/></pPr>[a]}", "(b4c)(b4c)"},
      {"{<pPr><pStyle val='Own'/><jc val='end'/><outlineLvl val='9'/><bidi/></pPr>[a]}", "(ber)(ber)"},
      {"{<pPr><pStyle val='berschrift2'/></pPr>[<rStyle val='Strong'/>|a]}{[<rStyle val='Strong'/>|b]}",
       "2(b2)b."},
      {"{<pPr><pStyle val='Loop'/></pPr>[a]}{<pPr><pStyle val='NoSuchStyle'/></pPr>[b]}", "...."},
      {"<T><tc>{[<b/>|a]}</tc><tc/></T>{[b]}", "b....."},
      {"<tbl><tblPr/><tblGrid><gridCol w='5'/><gridCol w='7'/></tblGrid><tr><tc>{[a]}</tc><tc><tbl><tr><tc>"
       "<tcPr><tcW w='3'/></tcPr>{[b]}</tc></tr></tbl>{}</tc></tr><tr><tc><tcPr><gridSpan val='2'/></tcPr>{}"
       "</tc></tr></tbl>{}",
       "(w5)(w5)(w3)(w3).(w7).(w12).."},
      {"{<pPr><numPr><ilvl val='1'/><numId val='4'/></numPr></pPr>}{<pPr><numPr><numId "
       "val='0'/></numPr></pPr>}",
       "(l2)."},
      {"{[a]<ins id='1'>[b]<del id='2'>[c]</del></ins>[d]<moveTo id='3'>[<b/>|e]</moveTo>[f]}", ".++.(b+).."},
      {"{<fldSimple instr='PAGE'>[<i/>|1]</fldSimple>}", "......i.."}};
  for (const auto& [body, looks] : cases)
    EXPECT_EQ(looksOf(open(documentOf(wml(body), {{"word/styles.xml", kStyles}}))), looks) << body;
}

TEST(Appearance, IsToldOfEveryStory) {
  const Opened opened = open(documentOf(
      wml("{[a]<r><pict><shape><txbxContent>{<pPr><pStyle "
          "val='Own'/></pPr>[b]}</txbxContent></shape></pict></r>}"),
      {{"word/styles.xml", kStyles},
       {"word/_rels/document.xml.rels", relationships({{"header", "h.xml"}, {"styles", "styles.xml"}})},
       {"word/h.xml", headerOf(wml("[<i/>|c]"))}}));
  EXPECT_EQ(looksOf(opened), "...");
  EXPECT_EQ(looksOf(opened, 1), "i.");
  EXPECT_EQ(looksOf(opened, 2), "(b4c)(b4c)");
}

TEST(Appearance, DoesWithoutStylesThatCannotBeRead) {
  EXPECT_EQ(looksOf(open(documentOf(wml("{<pPr><pStyle val='Own'/></pPr>[<b/>|a]}"),
                                    {{"word/styles.xml", "<w:styles>"}}))),
            "b.");
}

}  // namespace
}  // namespace pluvo::docx
