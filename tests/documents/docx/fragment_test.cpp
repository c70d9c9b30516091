#include "fragment.h"

#include "documents/docx/document_builder.h"
#include "properties.h"

namespace pluvo::docx {
namespace {

TEST(Properties, highlightStandsWhereTheSchemaWantsIt) {
  const Markup w;
  struct Case {
    const char* before;
    int colour;
    const char* after;
  };
  const Case cases[] = {
      {"", 7, "<rPr><highlight val='yellow'/></rPr>"},
      {"<rPr/>", 11, "<rPr><highlight val='darkGreen'/></rPr>"},
      {"<rPr><b/><sz val='24'/><u val='single'/></rPr>", 7,
       "<rPr><b/><sz val='24'/><highlight val='yellow'/><u val='single'/></rPr>"},
      {"<rPr><lang val='en'/><rPrChange id='1'><rPr><highlight val='red'/></rPr></rPrChange></rPr>", 6,
       "<rPr><highlight val='red'/><lang val='en'/><rPrChange id='1'><rPr><highlight "
       "val='red'/></rPr></rPrChange></rPr>"},
      {"<rPr><highlight val='red'/></rPr>", 0, ""},
      {"<rPr><!--a>b--><i/><highlight val='red'/><w14:x/></rPr>", 0, "<rPr><!--a>b--><i/><w14:x/></rPr>"},
      {"<rPr><ins id='2'/><szCs val='1'/><w14:glow><w14:a/></w14:glow></rPr>", 2,
       "<rPr><ins id='2'/><szCs val='1'/><highlight val='blue'/><w14:glow><w14:a/></w14:glow></rPr>"}};
  for (const Case& c : cases)
    EXPECT_EQ(withHighlight(wml(c.before), w, static_cast<std::uint8_t>(c.colour)), wml(c.after)) << c.before;
}

TEST(Properties, aParagraphSplitOffHasNoSectionAndNoTrackedMark) {
  const auto mark = [](const char* properties) {
    return wml("<pPr><rPr>" + std::string(properties) + "</rPr></pPr>");
  };
  EXPECT_EQ(
      forSplitOffParagraph(wml("<pPr><jc val='both'/><rPr><ins id='1'/><b/></rPr><sectPr><pgSz/></sectPr>"
                               "<pPrChange id='2'><pPr/></pPrChange></pPr>")),
      wml("<pPr><jc val='both'/><rPr><b/></rPr></pPr>"));
  EXPECT_EQ(forSplitOffParagraph(wml("<pPr><sectPr/></pPr>")), "");
  EXPECT_EQ(withMarkHighlight(wml("<pPr><keepNext/><sectPr/></pPr>"), Markup(), 7),
            wml("<pPr><keepNext/><rPr><highlight val='yellow'/></rPr><sectPr/></pPr>"));
  EXPECT_EQ(withMarkLike(mark("<vanish/><sz val='9'/>"), Markup(), 0, ""), mark("<sz val='9'/>"));
  EXPECT_EQ(withMarkLike(mark("<b/><sz val='9'/>"), Markup(), 0, wml("<rPr><vanish val='0'/></rPr>")),
            mark("<b/><vanish val='0'/><sz val='9'/>"));
  EXPECT_EQ(runPropertiesOfMark(mark("<del id='1'/>")), "");
}

TEST(Fragments, tagsLoseOnlyTheAttributesNamed) {
  EXPECT_EQ(startTagWithout("<w:p w14:paraId=\"1\" w:rsidR = '>' w14:textId=\"2\"/>", "paraId", "textId"),
            "<w:p w:rsidR = '>'>");
  EXPECT_EQ(fragmentOf("<a x='>'><a/><b></b><!--</a>--></a>rest").whole,
            "<a x='>'><a/><b></b><!--</a>--></a>");
}

}  // namespace
}  // namespace pluvo::docx
