#include "formats/docx/random_edits.h"
#include "formats/edits_of_each_kind.h"
#include "formats/left.h"
#include "formats/rtf/rtf_document.h"
#include "storage/store/corpus.h"
#include "support/invariants.h"
#include "support/notation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace pluvo::rtf {
namespace {

/// What there is of each story, in its notation.
std::vector<std::string> storiesOf(const Opened& opened) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < opened.document.count(); ++i) {
    const document::Story& story = opened.document.story(i);
    if (!opened.document.isGone(i))
      all.push_back(std::to_string(story.kind()) + ": " + notation::print(story));
  }
  return all;
}

/// Writes what stands in memory, and reads it again: the same document, that is written as it was read.
std::string savedAndTheSame(const Opened& opened) {
  std::string file = opened.written();
  const Opened again = open(file);
  EXPECT_EQ(storiesOf(again), storiesOf(opened)) << file.substr(0, 4000);
  EXPECT_EQ(again.written(), file);
  return file;
}

/// Of the first place of a text. A new text of "7" is a highlight.
void edit(document::Story& story, std::u16string_view place, std::u16string_view text) {
  const std::size_t at = story.text().substring(0, story.length()).find(place);
  ASSERT_NE(at, std::u16string::npos);
  const text::Span span{static_cast<text::Position>(at), static_cast<text::Position>(at + place.size())};
  if (text == u"7") {
    story.highlight(span, 7);
  } else {
    story.replace(span, text, text::View::results);
  }
}

/// What an edit makes of a document's bytes.
TEST(RtfFormat, IsEditedBySplices) {
  const struct {
    const char* before;
    std::u16string place;
    std::u16string text;
    const char* after;
  } cases[] = {
      // No word runs into what is put after it.
      {"\\b\\'e9x\\par", u"\u00E9", u"", "\\b x\\par"},
      {"\\b\\'e9 x\\par", u"\u00E9", u"", "\\b  x\\par"},
      {"\\b\\'e9{\\i x}\\par", u"\u00E9", u"", "\\b{\\i x}\\par"},
      {"\\b\nax\\par", u"a", u"", "\\b\nx\\par"},
      {"\\b\\'e9x\\par", u"\u00E9", u"a", "\\b ax\\par"},
      // Any text, in ASCII.
      {"axb\\par", u"x", u"{\\}\t\u0416\u20AC\U0001F600\u00A0\u001E\r\v",
       "a\\{\\\\\\}\\tab \\u1046?\\u8364?\\u-10179?\\u-8704?\\~\\_\\par \\line b\\par"},
      {"{\\uc0 axb}{\\uc2 cd}\\par", u"x", u"\u0416", "{\\uc0 a\\u1046 b}{\\uc2 cd}\\par"},
      {"{\\uc2 axb}\\par", u"x", u"\u0416", "{\\uc2 a\\u1046??b}\\par"},
      {"{\\u1046}x\\par", u"\u0416x", u"yz", "{yz}\\par"},
      {"{\\f3 axb}\\par", u"\uF078", u"y", "{\\f3 a{\\f0 y}b}\\par"},
      {"{\\f2\\'83}x{\\f2 A}\\par", u"x", u"", "{\\f2\\'83}{\\f2 A}\\par"},
      {"{\\f2\\'83\\u1046?A}\\par", u"\u0416", u"", "{\\f2\\'83{}A}\\par"},
      {"\\'4gba\\'xa\\par", u"gb", u"", "\\'4{}a\\'xa\\par"},
      {"\\\\'xa\\par", u"x", u"", "\\\\'a\\par"},
      {"a\\u0\\par z\\par", u"\r", u"", "a\\u0?z\\par"},
      {"a\\u1046\n\\par z\\par", u"\r", u"", "a\\u1046\n?z\\par"},
      {"{x\\footnote y}\\u1046\\par z\\par", u"x", u"", "{{}\\footnote y}\\u1046\\par z\\par"},
      {"a\\u1046\\par z\\par", u"\r", u"", "a\\u1046?z\\par"},
      {"{\\qc\\pict 00}xy\\par", u"x", u"z", "{\\qc\\pict 00}zy\\par"},
      // What goes as a whole.
      {"a{\\field{\\*\\fldinst X}{\\fldrslt b}}c\\par", u"a\u0013X\u0014b\u0015c", u"d", "d\\par"},
      {"a{\\super\\chftn}{\\footnote n}c\\par", u"\u0002", u"", "a{\\super}c\\par"},
      {"{\\*\\atrfstart 1}ab{\\*\\atrfend 1}{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}n}c\\par",
       u"b\u0005", u"", "ac\\par"},
      {"a\\par\\trowd\\cellx1\\pard\\intbl b\\cell{\\trowd\\cellx1\\row }\\trowd\\cellx2\\pard\\intbl "
       "c\\cell\\row\\pard d\\par",
       u"b\a\ac\a\a", u"", "a\\par\\pard\\intbl {}\\pard\\intbl \\pard d\\par"},
      {"a{\\*\\bkmkstart B}b{\\*\\bkmkend B}c{\\*\\bkmkstart D}d{\\*\\bkmkend D}{\\field{\\*\\fldinst REF "
       "d}}\\par",
       u"bcd", u"", "a{\\*\\bkmkstart D}{\\*\\bkmkend D}{\\field{\\*\\fldinst REF d}}\\par"},
      {"a\\par\\row b\\par", u"a\r", u"c", "cb\\par"},
      {"\\intbl\\itap2 a\\nestcell b{\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par", u"b\a", u"7",
       "\\intbl\\itap2 a\\nestcell \\highlight2 b\\nestcell {\\*\\nesttableprops\\nestrow}\\highlight0 "
       "c\\cell\\row\\pard d\\par"},
      {"\\intbl\\itap2 a\\nestcell b{\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par", u"b", u"",
       "\\intbl\\itap2 a\\nestcell \\nestcell {\\*\\nesttableprops\\nestrow}c\\cell\\row\\pard d\\par"},
      {"{\\listtext 1}a\\par{\\listtext 2}b\\par", u"\r", u"", "{\\listtext 1}ab\\par"},
      {"a\\par b", u"b", u"", "a\\par \\par "},
      // Highlight.
      {"a b c\\par", u"b", u"7", "a \\highlight2 b\\highlight0  c\\par"},
      {"a{\\highlight2 b c}d\\par", u"b", u"", "a{\\highlight2  c}d\\par"},
      {"{\\deleted a}b\\par", u"b", u"", "{\\deleted a}\\par"},
  };
  for (const auto& [before, place, text, after] : cases) {
    SCOPED_TRACE(before);
    Opened opened = open(head() + before + "}");
    edit(opened.model, place, text);
    EXPECT_EQ(savedAndTheSame(opened), head() + after + "}");
  }
}

/// What an edit of a story makes of a document's bytes.
TEST(RtfFormat, EditsStoriesWhereTheyStand) {
  const struct {
    const char* before;
    std::size_t story;
    std::u16string place;
    std::u16string text;
    const char* after;
  } cases[] = {
      {"{\\headerl x\\par}{\\header{\\b y}\\par}{\\footerf z}a\\par", 2, u"y", u"\u0416n",
       "{\\headerl x\\par}{\\header{\\b \\u1046?n}\\par}{\\footerf z}a\\par"},
      {"{\\uc0{\\header y\\par}}a\\par", 1, u"y", u"\u0416", "{\\uc0{\\header \\u1046 \\par}}a\\par"},
      {"{\\header y\\par}{\\header z\\par}a\\par", 2, u"z", u"7",
       "{\\header y\\par}{\\header \\highlight2 z\\highlight0 \\par}a\\par"},
      {"a\\chftn{\\footnote\\chftn y}{\\footnote\\ftnalt z}b\\par", 1, u"y", u"n",
       "a\\chftn{\\footnote\\chftn n}{\\footnote\\ftnalt z}b\\par"},
      {"a{\\super\\chftn}{\\footnote y}{\\footnote\\ftnalt z}b\\par", 0, u"\u0002", u"",
       "a{\\super}{\\footnote\\ftnalt z}b\\par"},
      {"a{\\footnote y{\\header h}}b\\par", 0, u"\u0002", u"", "ab\\par"},
      {"a{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}y\\par}\\par", 1, u"y", u"1\r2",
       "a{\\*\\atnid i}{\\*\\annotation{\\*\\atnref 1}1\\par 2\\par}\\par"},
      {"{\\header{\\shp{\\*\\shpinst{\\shptxt y{\\pict 00}}}{\\shprslt{\\*\\do{\\dptxbxtext y}}}}}a\\par", 2,
       u"y", u"n", "{\\header{\\shp{\\*\\shpinst{\\shptxt n{\\pict 00}}}}}a\\par"},
      {"{\\shp{\\*\\shpinst{\\shptxt y\\par}}{\\shprslt{\\*\\do{\\dptxbxtext{\\b y}\\par}}}}a\\par", 1, u"y",
       u"n", "{\\shp{\\*\\shpinst{\\shptxt n\\par}}{\\shprslt{\\*\\do{\\dptxbxtext{\\b n}\\par}}}}a\\par"},
      {"{\\shp{\\*\\shpinst{\\sp x}}{\\shprslt{\\*\\do{\\dptxbxtext y\\par}}}}a\\par", 1, u"y", u"n",
       "{\\shp{\\*\\shpinst{\\sp x}}{\\shprslt{\\*\\do{\\dptxbxtext n\\par}}}}a\\par"},
      {"{\\upr{axb}{\\*\\ud a{\\b x}b}}{\\upr{c}{\\*\\ud c}}\\par", 0, u"x", u"",
       "{\\upr{}{\\*\\ud a{\\b }b}}{\\upr{c}{\\*\\ud c}}\\par"},
      {"{\\field{\\*\\fldinst X}{\\fldrslt b{\\header h\\par}c}}d\\par", 0, u"\u0013X\u0014bc\u0015", u"",
       "{\\header h\\par}d\\par"},
  };
  for (const auto& [before, number, place, text, after] : cases) {
    SCOPED_TRACE(before);
    Opened opened = open(head() + before + "}");
    ASSERT_LT(number, opened.document.count());
    edit(opened.document.story(number), place, text);
    EXPECT_EQ(savedAndTheSame(opened), head() + after + "}");
    opened.document.saved();
    EXPECT_EQ(savedAndTheSame(opened), head() + after + "}") << "the second save has the first one's edits";
  }
}

TEST(RtfFormat, HighlightsAtTheEndsOfWhatIsOdd) {
  Opened cut = open("{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt {b");
  cut.model.highlight({4, 5}, 7);
  EXPECT_EQ(
      savedAndTheSame(cut),
      "{\\rtf1{\\colortbl;\\red255\\green255\\blue0;}{\\field{\\*\\fldinst X}{\\fldrslt {b}}\\highlight1 ");
  Opened early = open("{\\rtf1 {\\fonttbl} {\\colortbl;\\red255\\green255\\blue0;}\\pard}");
  early.model.highlight({1, 2}, 7);
  early.model.insertBefore(1, u"n");
  EXPECT_EQ(savedAndTheSame(early),
            "{\\rtf1 {\\fonttbl} {\\colortbl;\\red255\\green255\\blue0;}\\pard\\highlight1 n}");
}

TEST(RtfFormat, RefusesBeforehandWhatItCouldNotWrite) {
  const struct {
    const char* body;
    text::Position at;
  } cases[] = {
      {"a{\\*\\nesttableprops\\trowd\\nestrow}b\\par c\\par", 0}, {"a\\pict 00", 1}, {"a\\pict 00", 2}};
  for (const auto& [body, at] : cases) {
    Opened opened = open(head() + body + "}");
    EXPECT_THROW(opened.model.insertBefore(at, u"n"), errors::Fault) << body;
    EXPECT_FALSE(opened.document.changed());
  }
}

TEST(RtfFormat, TakesNoHighlightInFrontOfItsColours) {
  Opened opened = open("{\\rtf1{\\header h}a{\\colortbl;\\red255\\green255\\blue0;}b\\par}");
  EXPECT_THROW(opened.model.highlight({0, 1}, 7), errors::Fault);
  EXPECT_THROW(opened.document.story(1).highlight({0, 1}, 7), errors::Fault);
  opened.model.replace({0, 1}, u"n", text::View::results);
  EXPECT_THROW(opened.model.highlight({0, 1}, 7), errors::Fault);
  opened.model.highlight({1, 2}, 7);
  EXPECT_EQ(savedAndTheSame(opened),
            "{\\rtf1{\\header h}n{\\colortbl;\\red255\\green255\\blue0;}\\highlight1 b\\highlight0 \\par}");
}

/// Where a document, or what it says of all its text, ends in the middle of something.
TEST(RtfFormat, AddsTextAtAnEnd) {
  const struct {
    const char* before;
    text::Span place;
    const char16_t* text;
    const char* after;
  } cases[] = {
      {"{\\rtf1\\ansi\\'e9x}", {0, 1}, u"", "{\\rtf1\\ansi x}"},
      {"{\\rtf1\\ansi\\'e9x}", {0, 1}, u"a", "{\\rtf1\\ansi ax}"},
      {"{\\rtf1 x\\", {0, 1}, u"", "{\\rtf1 \\"},
      {"{\\rtf1 x\\", {1, 1}, u"a", "{\\rtf1 xa\\"},
      {"{\\rtf1 x\\'e", {1, 1}, u"a", "{\\rtf1 xa\\'e"},
      {"{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt b",
       {5, 5},
       u"a",
       "{\\rtf1{\\field{\\*\\fldinst X}{\\fldrslt b}}a"},
      {"{\\rtf1 x{\\field{\\*\\fldinst X}{\\fldrslt b", {0, 6}, u"a", "{\\rtf1 a"},
      {"{\\rtf1 x\\par\\row", {0, 1}, u"a", "{\\rtf1 a\\par\\row"},
  };
  for (const auto& [before, place, text, after] : cases) {
    Opened opened = open(before);
    EXPECT_EQ(opened.written(), before);
    opened.model.replace(place, text, text::View::results);
    EXPECT_EQ(savedAndTheSame(opened), after);
  }
}

TEST(RtfFormat, AddsColoursWhereTheDocumentHasThem) {
  const struct {
    const char* before;
    const char* after;
  } cases[] = {
      {"{\\rtf1\\ansi a}",
       "{\\rtf1\\ansi {\\colortbl;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 }"},
      {"{\\rtf1{\\fonttbl}\\pard a\\par}",
       "{\\rtf1{\\fonttbl}{\\colortbl;\\red255\\green255\\blue0;}\\pard \\highlight1 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl;\\red1;}a\\par}",
       "{\\rtf1{\\colortbl;\\red1;\\red255\\green255\\blue0;}\\highlight2 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl\\red1}a\\par}",
       "{\\rtf1{\\colortbl\\red1;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 \\par}"},
      {"{\\rtf1{\\colortbl}a\\par}",
       "{\\rtf1{\\colortbl;\\red255\\green255\\blue0;}\\highlight1 a\\highlight0 \\par}"},
  };
  for (const auto& [before, after] : cases) {
    Opened opened = open(before);
    opened.model.highlight({0, 1}, 7);
    EXPECT_EQ(savedAndTheSame(opened), after);
  }
}

TEST(Corpus, keepsAllOtherBytes) {
  const auto corpus = store::corpusOf({"rtf"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  for (const auto& path : corpus)
    formats::expectOtherBytesKept(path, open, savedAndTheSame,
                                  {{{0, 20}, {0, 20}, {0, 6}, {0, 70}, {8, 8}, {8, 1}}});
}

void editAtRandom(Opened& opened, std::mt19937& random, int edits) {
  const auto number = [&] { return static_cast<std::uint32_t>(random()); };
  for (int i = 0; i < edits; ++i) {
    const std::size_t story = number() % 2 == 0 ? 0 : number() % opened.document.count();
    docx::editBySeed(opened.document.story(story), {number(), number(), number(), number()});
  }
}

TEST(Corpus, takesRandomEditsThatAreReadBack) {
  const auto corpus = store::corpusOf({"rtf"});
  if (corpus.empty()) GTEST_SKIP() << store::kNoCorpus;
  const char* const asked = std::getenv("PLUVO_RTF_PROGRAMS");
  const int programs = asked == nullptr ? 2 : std::atoi(asked);
  for (const auto& path : corpus) {
    const base::Bytes bytes = store::bytesOf(path);
    for (int seed = 1; seed <= programs; ++seed) {
      SCOPED_TRACE(testing::Message() << path << " seed " << seed);
      std::string file(bytes.view.begin(), bytes.view.end());
      std::mt19937 random(static_cast<std::uint32_t>(seed));
      for (int generation = 0; generation < 3; ++generation) {
        Opened opened = open(file);
        editAtRandom(opened, random, 1 + seed % 8);
        try {
          file = savedAndTheSame(opened);
        } catch (const errors::DocumentError& error) {
          EXPECT_EQ(error.problem(), errors::Problem::unsupported) << "highlight in front of the colours";
        }
        if (seed == 1 && generation == 0)
          formats::leave("edited-" + path.filename().string(), bytesOf(file), opened.document);
      }
    }
  }
}

}  // namespace
}  // namespace pluvo::rtf
