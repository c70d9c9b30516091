// The quick ways beside the plain ways: both must do the same.
#include "formats/docx/document_builder.h"
#include "part_output.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <random>

namespace pluvo::docx {
namespace {

/// More formats than are remembered, some alike at the beginning, one too long to be remembered.
std::vector<std::string> formats() {
  std::vector<std::string> all = {"", "<w:vanish/>", "<w:vanish w:val=\"0\"/>", "<w:rStyle w:val=\"Quiet\"/>",
                                  "<w:rFonts w:ascii=\"" + std::string(600, 'x') + "\"/><w:vanish/>"};
  for (const char* colour : {"yellow", "green", "cyan", "magenta", "blue", "red", "darkBlue", "none"}) {
    all.push_back("<w:highlight w:val=\"" + std::string(colour) + "\"/>");
    all.push_back("<w:b/><w:highlight w:val=\"" + std::string(colour) + "\"/>");
    all.push_back("<w:highlight w:val=\"" + std::string(colour) + "\"/><w:vanish/>");
  }
  return all;
}

TEST(Twins, rememberedFormatsAndPlainTextReadLikeOthers) {
  const std::vector<std::string> all = formats();
  const std::vector<std::string> texts = {"a",        "seven b", "exactly8",  " nine  c ",
                                          "é at all", "a\tb",    "x &amp; y", "long enough for two blocks"};
  std::mt19937 random(1);
  const auto pick = [&](const auto& from) -> const std::string& { return from[random() % from.size()]; };
  for (int round = 0; round < 20; ++round) {
    std::string quick;
    std::string plain;
    int number = 0;
    const auto add = [&](const std::string& markup) {
      quick += markup;
      plain += markup;
    };
    for (int paragraph = 0; paragraph < 8; ++paragraph) {
      // Under another declaration nothing that is remembered holds.
      const bool foreign = random() % 4 == 0;
      add("<w:p>");
      for (int run = 0; run < 12; ++run) {
        const std::string declaration = foreign ? " xmlns:v=\"urn:other\"" : "";
        const std::string format = pick(all);
        const std::string text = pick(texts);
        const std::string comment = "<!--" + std::to_string(++number) + "-->";
        const std::string space = random() % 2 == 0 ? " xml:space=\"preserve\"" : "";
        add("<w:r" + declaration + ">");
        if (!format.empty()) {
          quick += "<w:rPr>" + format + "</w:rPr>";
          plain += "<w:rPr>" + comment + format + "</w:rPr>";
        }
        quick += "<w:t" + space + ">" + text + "</w:t></w:r>";
        plain += "<w:t" + space + ">" + text + comment + "</w:t></w:r>";
      }
      add("</w:p>");
    }
    Opened one = open(documentOf(quick));
    Opened other = open(documentOf(plain));
    ASSERT_EQ(notation::print(one.model), notation::print(other.model)) << quick;
  }
}

TEST(Twins, theSameBytesUnderAnotherDeclarationAreReadAnew) {
  const std::string format = "<w:rPr><w:vanish/></w:rPr><w:t>x</w:t>";
  const std::string foreign =
      "<v:r xmlns:v=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\" "
      "xmlns:w=\"urn:other\"><v:rPr><w:vanish/></v:rPr><v:t>x</v:t></v:r>";
  const std::string own =
      "<v:r xmlns:v=\"http://schemas.openxmlformats.org/wordprocessingml/2006/main\">"
      "<v:rPr><w:vanish/></v:rPr><v:t>x</v:t></v:r>";
  Opened opened = open(documentOf(p("<w:r>" + format + "</w:r>" + own + foreign + own)));
  EXPECT_EQ(notation::print(opened.model), "<h:xx>x<h:x>¶");
}

}  // namespace
}  // namespace pluvo::docx
