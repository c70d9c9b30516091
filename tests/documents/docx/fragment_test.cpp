#include "fragment.h"

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
      {"", 7, "<w:rPr><w:highlight w:val=\"yellow\"/></w:rPr>"},
      {"<w:rPr/>", 11, "<w:rPr><w:highlight w:val=\"darkGreen\"/></w:rPr>"},
      {"<w:rPr><w:b/><w:sz w:val=\"24\"/><w:u w:val=\"single\"/></w:rPr>", 7,
       "<w:rPr><w:b/><w:sz w:val=\"24\"/><w:highlight w:val=\"yellow\"/><w:u w:val=\"single\"/></w:rPr>"},
      {"<w:rPr><w:lang w:val=\"en\"/><w:rPrChange w:id=\"1\"><w:rPr><w:highlight "
       "w:val=\"red\"/></w:rPr></w:rPrChange></w:rPr>",
       6,
       "<w:rPr><w:highlight w:val=\"red\"/><w:lang w:val=\"en\"/><w:rPrChange w:id=\"1\"><w:rPr><w:highlight "
       "w:val=\"red\"/></w:rPr></w:rPrChange></w:rPr>"},
      {"<w:rPr><w:highlight w:val=\"red\"/></w:rPr>", 0, ""},
      {"<w:rPr><!--a>b--><w:i/><w:highlight w:val=\"red\"/><w14:x/></w:rPr>", 0,
       "<w:rPr><!--a>b--><w:i/><w14:x/></w:rPr>"},
      {"<w:rPr><w:ins w:id=\"2\"/><w:szCs w:val=\"1\"/><w14:glow><w14:a/></w14:glow></w:rPr>", 2,
       "<w:rPr><w:ins w:id=\"2\"/><w:szCs w:val=\"1\"/><w:highlight "
       "w:val=\"blue\"/><w14:glow><w14:a/></w14:glow></w:rPr>"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(withHighlight(c.before, w, static_cast<std::uint8_t>(c.colour)), c.after) << c.before;
  }
}

TEST(Properties, aParagraphSplitOffHasNoSectionAndNoTrackedMark) {
  EXPECT_EQ(
      forSplitOffParagraph("<w:pPr><w:jc w:val=\"both\"/><w:rPr><w:ins w:id=\"1\"/><w:b/></w:rPr><w:sectPr>"
                           "<w:pgSz/></w:sectPr><w:pPrChange w:id=\"2\"><w:pPr/></w:pPrChange></w:pPr>"),
      "<w:pPr><w:jc w:val=\"both\"/><w:rPr><w:b/></w:rPr></w:pPr>");
  EXPECT_EQ(forSplitOffParagraph("<w:pPr><w:sectPr/></w:pPr>"), "");
  EXPECT_EQ(withMarkHighlight("<w:pPr><w:keepNext/><w:sectPr/></w:pPr>", Markup(), 7),
            "<w:pPr><w:keepNext/><w:rPr><w:highlight w:val=\"yellow\"/></w:rPr><w:sectPr/></w:pPr>");
  EXPECT_EQ(withMarkLike("<w:pPr><w:rPr><w:vanish/><w:sz w:val=\"9\"/></w:rPr></w:pPr>", Markup(), 0, ""),
            "<w:pPr><w:rPr><w:sz w:val=\"9\"/></w:rPr></w:pPr>");
  EXPECT_EQ(withMarkLike("<w:pPr><w:rPr><w:b/><w:sz w:val=\"9\"/></w:rPr></w:pPr>", Markup(), 0,
                         "<w:rPr><w:vanish w:val=\"0\"/></w:rPr>"),
            "<w:pPr><w:rPr><w:b/><w:vanish w:val=\"0\"/><w:sz w:val=\"9\"/></w:rPr></w:pPr>");
  EXPECT_EQ(runPropertiesOfMark("<w:pPr><w:rPr><w:del w:id=\"1\"/></w:rPr></w:pPr>"), "");
}

TEST(Fragments, tagsLoseOnlyTheAttributesNamed) {
  EXPECT_EQ(startTagWithout("<w:p w14:paraId=\"1\" w:rsidR = '>' w14:textId=\"2\"/>", "paraId", "textId"),
            "<w:p w:rsidR = '>'>");
  EXPECT_EQ(fragmentOf("<a x='>'><a/><b></b><!--</a>--></a>rest").whole,
            "<a x='>'><a/><b></b><!--</a>--></a>");
}

}  // namespace
}  // namespace pluvo::docx
