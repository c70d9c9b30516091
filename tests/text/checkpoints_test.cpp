#include "checkpoints.h"

#include "base/utf.h"
#include "plain_units.h"
#include "support/dice.h"
#include "text/utf8_text.h"
#include "unit_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace pluvo::text {
namespace {

constexpr Position kSmallChunk = 8;

Dice dice(17);
Position upTo(Position n) { return dice.upTo(n); }

/// Words, long runs of one unit, and everything that a rule treats in its own way.
std::u16string someText(Position length) {
  static constexpr std::u16string_view kUnits =
      u"aab1  "
      u"..,,''?!)\u201D\u00BB\u3000\u304B\r\r\a\f\f\t\v\x02\x1F\u00A0\u2003\xD835\xDC00\xD83D\xDE00\u0301-";
  std::u16string text;
  while (static_cast<Position>(text.size()) < length) {
    text.append(static_cast<std::size_t>(upTo(12) == 0 ? upTo(300) : 1), dice.of(kUnits));
  }
  text.resize(static_cast<std::size_t>(length));
  return text;
}

/// The same text as it lies in UTF-8, where it has any letters for that; half pairs become other letters.
/// Line feeds in a file are paragraph marks, and belong to the carriage return before them.
OriginalText asUtf8(std::u16string& text) {
  const auto bytes = std::make_shared<std::string>();
  for (const char byte : base::utf8(text) + '\r') {
    const bool isFeed = byte == 'a' && upTo(4) == 0;
    if (!isFeed || !bytes->ends_with('\r')) *bytes += isFeed ? '\n' : byte;
    if (byte == '\r' && upTo(2) == 0) *bytes += '\n';
  }
  *bytes += '\r';
  text = base::utf16(*bytes);
  for (std::size_t at = 0; (at = text.find(u"\r\n", at)) != text.npos;) text.erase(++at, 1);
  std::ranges::replace(text, u'\n', kParagraphMark);
  const Utf8Text::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
  const auto utf8 = Utf8Text::survey(span, bytes).text;
  return utf8 == nullptr ? OriginalText(text) : OriginalText(utf8);
}

template <class Rule>
class Compared {
 public:
  Compared(Unit unit, const UnitText& text) : unit_(unit), checkpoints_(Rule(&text)) {}

  void edited(Position from, Position to, Position newLength) { checkpoints_.edited(from, to, newLength); }

  void ask(const PlainUnits& plain, Position length) {
    const auto starts = plain.starts(unit_);
    for (int i = 0; i < 4; ++i) {
      const Position from = upTo(length);
      const Position to = from + upTo(i % 2 == 0 ? length - from : std::min(length - from, 2 * kSmallChunk));
      const auto begin = std::lower_bound(starts.begin(), starts.end(), from);
      const auto end = std::lower_bound(starts.begin(), starts.end(), to);
      ASSERT_EQ(checkpoints_.count(from, to), end - begin) << from << ' ' << to;
      const Position n = 1 + upTo(upTo(length));
      const auto ahead = checkpoints_.forward(from, n);
      ASSERT_EQ(ahead.count, std::min<std::ptrdiff_t>(n, starts.end() - begin));
      if (ahead.count == n) {
        ASSERT_EQ(ahead.position, begin[n - 1]);
      }
      const auto after = checkpoints_.backward(to, n);
      ASSERT_EQ(after.count, std::min<std::ptrdiff_t>(n, end - starts.begin()));
      if (after.count == n) {
        ASSERT_EQ(after.position, end[-n]);
      }
    }
  }

 private:
  Unit unit_;
  Checkpoints<Rule, kSmallChunk> checkpoints_;
};

TEST(Checkpoints, TellUnitsThroughAllEdits) {
  for (int round = 0; round < 40; ++round) {
    std::u16string twin = someText(upTo(round % 4 < 2 ? 6000 : 300));
    PieceText pieces{round % 2 == 0 ? OriginalText(twin) : asUtf8(twin)};
    const UnitText text{&pieces, isTestMark};
    Compared<WordRule> words(Unit::word, text);
    Compared<SentenceRule> sentences(Unit::sentence, text);
    Compared<ParagraphRule> paragraphs(Unit::paragraph, text);
    Position at = 0;
    for (int step = 0; step < 50; ++step) {
      const PlainUnits plain(twin);
      ASSERT_NO_FATAL_FAILURE(words.ask(plain, pieces.length())) << round;
      ASSERT_NO_FATAL_FAILURE(sentences.ask(plain, pieces.length())) << round;
      ASSERT_NO_FATAL_FAILURE(paragraphs.ask(plain, pieces.length())) << round;
      const Position length = pieces.length();
      const Position from = upTo(3) == 0 ? upTo(length) : std::min(at, length);
      const Position to = from + upTo(std::min(length - from, upTo(9) == 0 ? 500 : 6));
      // Characters 7 and 12 keep their parity, by which the test tells marks.
      std::u16string added = someText(upTo(upTo(9) == 0 ? 200 : 3));
      if ((static_cast<Position>(added.size()) - (to - from)) % 2 != 0) added += u'x';
      twin.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from), added);
      pieces.replace(from, to, added, {});
      const auto newLength = static_cast<Position>(added.size());
      words.edited(from, to, newLength);
      sentences.edited(from, to, newLength);
      paragraphs.edited(from, to, newLength);
      at = from + newLength + upTo(40);
    }
  }
}

TEST(Checkpoints, TellSentencesByBytesAsByUnits) {
  for (int round = 0; round < 400; ++round) {
    std::u16string twin = someText(upTo(70));
    // Bytes do not tell whether these are marks.
    std::erase_if(twin, [](char16_t unit) { return unit == kCellMark || unit == kPageBreak; });
    const PieceText bytes{asUtf8(twin)};
    const PieceText units{OriginalText(twin + u'\u304B')};
    const Units byBytes(bytes, isTestMark);
    const Units byUnits(units, isTestMark);
    for (Position from = 0; from < bytes.length(); ++from)
      for (Position to = from; to <= bytes.length(); ++to)
        ASSERT_EQ(byBytes.count(Unit::sentence, from, to), byUnits.count(Unit::sentence, from, to))
            << round << ' ' << from << ' ' << to;
  }
}

TEST(Checkpoints, TellVisibleCharactersThroughAllEdits) {
  for (int round = 0; round < 40; ++round) {
    std::u16string twin(static_cast<std::size_t>(upTo(3000)), u'v');
    RunMap<Visibility> map(static_cast<Position>(twin.size()), kEverywhere);
    Checkpoints<VisibleRule, kSmallChunk> characters(VisibleRule(&map, View::codes));
    for (int step = 0; step < 60; ++step) {
      const Position length = map.length();
      const Position from = upTo(length);
      const Position to = from + upTo(std::min(length - from, 60));
      const Position newLength = upTo(60);
      const bool shown = upTo(1) == 0;
      map.replace(from, to, newLength, shown ? kInCodes : kInResults);
      twin.replace(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from),
                   static_cast<std::size_t>(newLength), shown ? u'v' : u'h');
      characters.edited(from, to, newLength);
      const Position begin = upTo(map.length());
      const Position end = begin + upTo(map.length() - begin);
      ASSERT_EQ(characters.count(begin, end), std::count(twin.begin() + begin, twin.begin() + end, u'v'));
      const Position n = 1 + upTo(upTo(map.length()));
      const auto found = characters.forward(begin, n);
      ASSERT_EQ(found.count, std::min<std::ptrdiff_t>(n, std::count(twin.begin() + begin, twin.end(), u'v')));
      if (found.count < n) continue;
      ASSERT_EQ(twin[static_cast<std::size_t>(found.position)], u'v');
      ASSERT_EQ(std::count(twin.begin() + begin, twin.begin() + found.position, u'v'), n - 1);
    }
  }
}

}  // namespace
}  // namespace pluvo::text
