// The quick ways beside the plain ways: both must do the same.
#include "base/at_once.h"
#include "errors/fault.h"
#include "formats/docx/document_builder.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <thread>

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

/// Paragraphs with what a walk keeps in mind from one to the next, in a part large enough to be divided.
std::string largeBody(std::mt19937& random, bool hasIds) {
  const std::string plain = run("some words, ", "<w:rFonts w:ascii=\"" + std::string(700, 'x') + "\"/>");
  std::string body;
  for (int i = 0; i < 1500; ++i) {
    const std::string id = std::to_string(i + 10);
    const std::string marker =
        "<w:bookmarkStart w:id=\"" + id + "\" w:name=\"b" + id + "\"/><w:bookmarkEnd w:id=\"" + id + "\"/>";
    const std::array contents = {
        plain + plain, "<w:pPr><w:jc w:val=\"both\"/></w:pPr>" + plain + marker + run("b&amp;é "),
        plain + "<w:sdt><w:sdtContent>" + run("held ") + "</w:sdtContent></w:sdt>", std::string(),
        plain + "<w:ins w:id=\"" + id + "\" w:author=\"A\">" + run("new words ") + "</w:ins>" + plain};
    const std::string paragraph = p(contents.at(random() % (contents.size() - (hasIds ? 0 : 1))));
    const auto kind = random() % 20;
    if (kind == 0) body += "<w:tbl><w:tr><w:tc>" + paragraph + "</w:tc></w:tr></w:tbl>";
    if (kind == 1) body += marker + "\n<!-- - -->";
    if (kind == 2) body += "<w:sdt><w:sdtContent>" + paragraph + "</w:sdtContent></w:sdt>";
    body += paragraph + (kind > 10 ? "\n" : "");
  }
  return body + p(plain);
}

/// Edits here and there; with mostMarks the ends of nine paragraphs of ten go, too.
void edit(document::Story& story, std::mt19937& random, bool mostMarks) {
  const std::array<std::u16string, 4> puts = {u"", u"put", u"one\rtwo", u"\r"};
  for (text::Position at = story.length() - 3; at > 1; --at) {
    const bool isMark = story.text().at(at) == u'\r';
    if (mostMarks ? !isMark || random() % 10 == 0 : random() % 30 != 0) continue;
    const text::Span span{at - 1, at + 1 + static_cast<text::Position>(random() % 2)};
    try {
      if (random() % 3 == 0) story.highlight(span, 7);
      story.replace(span, puts.at(random() % (mostMarks ? 2 : puts.size())), text::View::results);
    } catch (const errors::Fault&) {  // NOLINT(bugprone-empty-catch): what may not be edited is left
    }
  }
}

TEST(Twins, aPartRewrittenByAllProcessorsIsTheSame) {
  for (const unsigned seed : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U}) {
    std::mt19937 random(seed);
    Opened opened = open(documentOf(largeBody(random, seed == 1)));
    edit(opened.model, random, seed % 2 == 0);
    const std::string byAll = bodyOf(opened.written());
    const std::vector<base::Worker> others(std::thread::hardware_concurrency());
    EXPECT_TRUE(bodyOf(opened.written()) == byAll) << seed;
  }
}

}  // namespace
}  // namespace pluvo::docx
