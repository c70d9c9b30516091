#include "text/units.h"

#include "base/utf.h"
#include "plain_units.h"
#include "text/utf8_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace pluvo::text {
namespace {

/// Takes the bars out of a text and returns where they stood.
std::vector<Position> takeBars(std::u16string& text) {
  std::vector<Position> bars;
  for (std::size_t bar; (bar = text.find(u'|')) != text.npos; text.erase(bar, 1)) {
    bars.push_back(static_cast<Position>(bar));
  }
  return bars;
}

std::vector<Position> startsOf(Unit unit, const std::u16string& units) {
  const PieceText text{OriginalText(units)};
  const Units of(text, isTestMark);
  std::vector<Position> starts;
  for (Position p = 0; p < text.length(); p = of.forward(unit, p, 1).position) starts.push_back(p);
  return starts;
}

/// A text as it lies in a file of UTF-8.
std::shared_ptr<const Utf8Text> inFile(const std::shared_ptr<std::string>& bytes, std::u16string_view units) {
  *bytes = base::utf8(units) + '\r';
  const Utf8Text::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
  return Utf8Text::survey(span, bytes).text;
}

/// Every span holds as many units in a file's bytes as in memory.
void expectSame(Unit unit, const PieceText& inBytes) {
  const PieceText inUnits{OriginalText(inBytes.substring(0, inBytes.length()))};
  const Units ofBytes(inBytes, isTestMark);
  const Units ofUnits(inUnits, isTestMark);
  for (Position to = 1; to <= inBytes.length(); ++to)
    for (Position from = 0; from < to; ++from)
      ASSERT_EQ(ofBytes.count(unit, from, to), ofUnits.count(unit, from, to)) << from << ' ' << to;
}

void expectSameInUtf8(Unit unit, const std::u16string& units) {
  const auto utf8 = inFile(std::make_shared<std::string>(), u"\xD801\xDC00'" + units);
  ASSERT_NE(utf8, nullptr);
  PieceText text{OriginalText(utf8)};
  ASSERT_NO_FATAL_FAILURE(expectSame(unit, text));
  text.replace(0, 1, u"", {});  // half of a pair is left
  expectSame(unit, text);
}

void expectUnits(Unit unit, std::initializer_list<std::u16string> cases) {
  for (std::u16string text : cases) {
    const std::u16string notation = text;
    const std::vector<Position> expected = takeBars(text);
    EXPECT_EQ(expected, startsOf(unit, text)) << testing::PrintToString(notation);
    EXPECT_EQ(PlainUnits(text).starts(unit), startsOf(unit, text)) << testing::PrintToString(notation);
    EXPECT_NO_FATAL_FAILURE(expectSameInUtf8(unit, text)) << testing::PrintToString(notation);
  }
}

TEST(Units, Words) {
  expectUnits(Unit::word, {u"|The |cat|.|\r", u"|one |two |three |four |five |six|\r", u"|\r|\r|\r",
                           u"|Stop|.  |Go|\r|  |in \u00A0\u3000", u"|Wait|... |what|?!\u201D |(|so|)|\r",
                           u"|don't |\u2018|l\u2019\u00E9t\u00E9|\u2019 |'|90s|' ",
                           u"|well|-|known |3.14 |1,000|, |2|.|x |.|5|\r", u"|a|\t|\t |b|\v|c|\x0E|d|\r",
                           u"|end|\f|next|\f|.|\f|  |x", u"|cell|\a|\a|\r",
                           u"|co\x1Fop |a|\x1E|b |\x13|PAGE |\x14|7|\x15", u"|note|\x02 |\x05|x",
                           u"|\xD835\xDC00\xD835\xDC01x |\xD83D\xDE00\xD83D\xDE00 |\xDC00|a|\xD800",
                           u"|caf\u0065\u0301s |\u65E5\u672C\u8A9E|\u3002"});
}

TEST(Units, Sentences) {
  expectUnits(Unit::sentence, {u"|One. |Two?  |Three!\t\v|Four", u"|One.\r|Two. \r|\r|  Three. ",
                               u"|He said \u201CStop.\u201D |Then (it.) |He went.\x02 |On",
                               u"|Pi is 3.14 or e.g.this... |So. ... |And. |\"Ha!\" |Ha", u"|Dr. |Who",
                               u"|Cells.\a|Cells. \a|...Not.\f|One.\f|x.\f|y", u"|a.\u2019b. |c"});
}

TEST(Units, Paragraphs) {
  expectUnits(Unit::paragraph, {u"|one\v\x0Etwo\r|\r|threes\a|x\a|four\a", u"|a\fb\f\f|c\f"});
}

TEST(Units, StayInATextThatAnotherProgramWritesInto) {
  for (const std::string_view over : {"p\xF3\xE9"
                                      "ab",
                                      "\xE4\xBD", "\x80", "\xF0\x90\r\n", "a"}) {
    const auto bytes = std::make_shared<std::string>();
    const PieceText text{OriginalText(inFile(bytes, u"One \u00E9\u4E2D. \xD801\xDC00 two's 3.14\r"))};
    for (std::size_t i = 0; i < bytes->size(); ++i) (*bytes)[i] = over[i % over.size()];
    const Units units(text, isTestMark);
    const Position length = text.length();
    for (const Unit unit : {Unit::word, Unit::sentence, Unit::paragraph}) {
      for (Position from = 0; from < length; ++from) {
        for (Position to = from + 1; to <= length; ++to)
          EXPECT_LE(units.count(unit, from, to), to - from + 1);
        EXPECT_LE(units.forward(unit, from, 2).position, length);
        EXPECT_GE(units.backward(unit, from, 2).position, 0);
      }
    }
  }
}

TEST(Units, CountsOfPartlyCoveredAndEmptySpans) {
  const PieceText text{OriginalText(std::u16string(u"The cat sat. It ran.\r"))};
  const Units units(text, isTestMark);
  EXPECT_EQ(units.count(Unit::word, 5, 9), 2);
  EXPECT_EQ(units.count(Unit::word, 0, text.length()), 8);
  EXPECT_EQ(units.count(Unit::sentence, 11, 14), 2);
  EXPECT_EQ(units.count(Unit::paragraph, 3, 3), 1);
  EXPECT_EQ(units.forward(Unit::word, 19, 9), (Move{21, 2}));
  EXPECT_EQ(units.backward(Unit::sentence, 14, 9), (Move{0, 2}));
  EXPECT_EQ(units.backward(Unit::word, 5, 1), (Move{4, 1}));
}

}  // namespace
}  // namespace pluvo::text
