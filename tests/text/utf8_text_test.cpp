#include "text/utf8_text.h"

#include "base/utf.h"
#include "scan.h"
#include "support/dice.h"
#include "text/original_matches.h"
#include "text/utf8_decoding.h"
#include "utf8_scan.h"

#include <gtest/gtest.h>
#include <strings.h>

#include <memory>
#include <string>
#include <vector>

namespace pluvo::text {
namespace {

/// The bytes read one at a time: the units, and for each where its character begins.
struct PlainUtf8 {
  bool valid = true;
  std::u16string units;
  std::vector<Utf8Text::Place> places;

  explicit PlainUtf8(const std::string& bytes) {
    for (std::size_t at = 0; valid && at < bytes.size();) {
      const auto byte = [&](std::size_t i) -> char32_t {
        return at + i < bytes.size() ? static_cast<std::uint8_t>(bytes[at + i]) : 0;
      };
      const std::size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
      char32_t point = length == 1 ? byte(0) : byte(0) & (0x7FU >> length);
      valid = byte(0) < 0x80 || byte(0) >= 0xC0;
      for (std::size_t i = 1; i < length; ++i) {
        valid = valid && (byte(i) & 0xC0) == 0x80;
        point = point << 6 | (byte(i) & 0x3F);
      }
      constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
      valid = valid && point >= kLeast[length - 1] && point <= 0x10FFFF &&
              (point < 0xD800 || point > 0xDFFF) && byte(0) < 0xF8;
      const bool pair = point == U'\r' && byte(1) == U'\n';
      if (point == U'\n') point = U'\r';
      if (point > 0xFFFF) add(static_cast<char16_t>(0xD7C0 + (point >> 10)), {at, false});
      if (point > 0xFFFF) point = 0xDC00 + (point & 0x3FF);
      add(static_cast<char16_t>(point), {at, length == 4});
      at += pair ? 2 : length;
    }
  }
  void add(char16_t unit, Utf8Text::Place place) {
    units += unit;
    places.push_back(place);
  }
};

class Generator : public Dice {
 public:
  using Dice::Dice;
  std::string bytes() {
    static const std::string parts[] = {"a",
                                        "plain text without anything ",
                                        "\r",
                                        "\n",
                                        "\r\n",
                                        "ü",
                                        "Ж",
                                        "和",
                                        "\uE000",
                                        "\uD7FF",
                                        "𝒜",
                                        "\U0010FFFF",
                                        std::string(1, '\0')};
    static const std::string wrong[] = {
        "\x80",         "\xC0\x80",         "\xC1\xBF",         "\xE0\x9F\xBF",
        "\xED\xA0\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xC3",         "\xE2\x82",         "\xF0\x9F\x98"};
    std::string all;
    const int kinds = oneIn(3) ? 2 : static_cast<int>(std::size(parts));
    for (int left = upTo(oneIn(2) ? 20 : 1500); left > 0; --left) all += parts[upTo(kinds - 1)];
    if (oneIn(3)) all.insert(static_cast<std::size_t>(upTo(std::ssize(all))), of(wrong));
    return all;
  }
};

TEST(Utf8Text, IsWhatReadingEveryByteTells) {
  Generator generate(11);
  for (int round = 0; round < 1500; ++round) {
    const std::string bytes = generate.bytes();
    const PlainUtf8 expected(bytes);
    const auto held = std::make_shared<const std::string>(bytes + '\r');
    const Utf8Text::Bytes span(reinterpret_cast<const std::uint8_t*>(held->data()), bytes.size());
    const auto survey = Utf8Text::survey(span, held);
    ASSERT_EQ(survey.valid, expected.valid) << "round " << round;
    if (survey.text == nullptr) {
      EXPECT_TRUE(!survey.valid || expected.units.size() == bytes.size());
      continue;
    }
    const Utf8Text& text = *survey.text;
    ASSERT_EQ(static_cast<std::size_t>(text.length()), expected.units.size() + 1);
    const int step = 1 + generate.upTo(40);
    for (int turn = 0, at = 0; turn < 200 && at < text.length(); ++turn, at += step) {
      const Position position = generate.oneIn(3) ? generate.upTo(text.length() - 1) : at;
      const auto index = static_cast<std::size_t>(position);
      const auto place = text.placeOf(position);
      const bool last = index == expected.units.size();
      const Utf8Text::Place wanted = last ? Utf8Text::Place{bytes.size(), false} : expected.places[index];
      ASSERT_EQ(place.offset, wanted.offset) << "round " << round << ", " << position;
      ASSERT_EQ(place.insidePair, wanted.insidePair);
      ASSERT_EQ(text[position], last ? u'\r' : expected.units[index]);
      ASSERT_EQ(text.positionAt(place.offset) + (place.insidePair ? 1 : 0), position);
      ASSERT_TRUE(text.beginsUnit(place.offset));
      const Position to = position + generate.upTo(std::min(text.length() - position, 700));
      std::u16string copy(static_cast<std::size_t>(to - position), u' ');
      text.copy(position, to, copy.data());
      ASSERT_EQ(copy, (expected.units + u'\r').substr(index, copy.size()));
    }
  }
}

TEST(CleanUtf8, EndsWhereACharacterBeginsBeforeAllThatIsWrong) {
  Generator generate(13);
  static const std::string odd[] = {"\x1F", "\uFFFE", "\uFFFF", "\uFFFD", "\uF900", "\uD55C"};
  for (int round = 0; round < 1500; ++round) {
    std::string bytes = generate.bytes();
    if (generate.oneIn(2))
      bytes.insert(static_cast<std::size_t>(generate.upTo(std::ssize(bytes))), generate.of(odd));
    std::size_t good = 0;  // read one at a time
    while (good < bytes.size()) {
      const base::Utf8Character next = base::firstOfUtf8(std::string_view(bytes).substr(good));
      const bool isControl =
          next.point < 0x20 && next.point != '\t' && next.point != '\n' && next.point != '\r';
      if (next.bytes == 0 || isControl || next.point == 0xFFFE || next.point == 0xFFFF) break;
      good += next.bytes;
    }
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    for (const std::size_t clean :
         {cleanUtf8Anywhere(data, bytes.size()), hasAvx2() ? cleanUtf8Avx2(data, bytes.size()) : good}) {
      ASSERT_LE(clean, good) << "round " << round;
      ASSERT_LT(good - clean, 70U);
      ASSERT_TRUE(clean == bytes.size() || !base::isUtf8Follower(data[clean]) || clean == good);
    }
  }
}

/// Up to the first control character or character of two units, or the room's end.
TEST(Utf8Decoding, IsTheSameOnAnyProcessor) {
  Generator generate(17);
  static const std::string even[] = {"a", "plain ASCII text ", "ü", "Ж", "和", "\uD7FF", "\uE000", "\x7F"};
  static const std::string odd[] = {"\x1F", "\t", "𝒜", "\U0010FFFF"};
  std::vector<decltype(&decodeUtf8Anywhere)> variants = {decodeUtf8Anywhere};
  if (hasAvx2()) variants.push_back(decodeUtf8Avx2);
  if (hasAvx512Compress()) variants.push_back(decodeUtf8Avx512);
  for (int round = 0; round < 3000; ++round) {
    std::string bytes;
    for (int left = generate.upTo(300); left > 0; --left) bytes += generate.of(even);
    if (generate.oneIn(2)) bytes += generate.of(odd) + bytes;
    const auto room = static_cast<std::size_t>(generate.upTo(std::ssize(bytes) + 1));
    std::size_t read = 0;
    std::u16string expected;
    while (read < bytes.size() && expected.size() < room) {
      const base::Utf8Character next = base::firstOfUtf8(std::string_view(bytes).substr(read));
      if (next.point < 0x20 || next.point > 0xFFFF) break;
      expected += static_cast<char16_t>(next.point);
      read += next.bytes;
    }
    for (const auto decode : variants) {
      std::u16string units(room, u'?');
      const Utf8Decoded decoded =
          decode(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), units.data(), room);
      units.resize(decoded.units);
      ASSERT_EQ(units, expected) << "round " << round;
      std::size_t bytesRead = decoded.bytes;
      while (units.size() == room && bytesRead < read &&
             base::isUtf8Follower(static_cast<std::uint8_t>(bytes[bytesRead])))
        ++bytesRead;
      ASSERT_EQ(bytesRead, read) << "round " << round;
    }
  }
}

TEST(Utf8Decoding, ReadsCharactersThatBeginInOneBlockAndEndInTheNext) {
  for (const std::string& character : {std::string("é"), std::string("’"), std::string("中")}) {
    for (std::size_t front = 0; front < 140; ++front) {
      const std::string bytes = std::string(front, 'a') + character + std::string(140, 'b');
      std::u16string units(bytes.size(), u'\0');
      const Utf8Decoded decoded = decodeUtf8(
          {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, units.data(), units.size());
      units.resize(decoded.units);
      ASSERT_EQ(units, base::utf16(bytes)) << character << " after " << front;
    }
  }
}

TEST(Utf8Text, LargeOnesThatAreLookedOverInPartsHaveTheirUnitsWhereSmallOnesDo) {
  constexpr std::size_t kSize = (std::size_t{17} << 20U) + 300;
  const std::size_t border = utf8Rows(kSize) / 2 * kNoteInterval;
  struct Case {
    std::string_view atBorder;
    std::size_t odd;
  };
  for (const auto& [atBorder, odd] : {Case{"aaaaaa", 700}, Case{"aaaaaa", kSize - 700}, Case{"aa\r\na", 700},
                                      Case{"aa\xE4\xBD\x8F", kSize}}) {
    std::string text(kSize, 'a');
    text.replace(border - 3, atBorder.size(), atBorder);
    if (odd < kSize) text.replace(odd, 4, "\xF0\x9F\x98\x80");
    std::vector<Position> before{0};  // units in front of each byte
    for (std::size_t i = 0; i < kSize; ++i) {
      const auto byte = static_cast<std::uint8_t>(text[i]);
      const bool joined = byte == '\n' && text[i - 1] == '\r';
      before.push_back(before.back() + (base::isUtf8Follower(byte) || joined ? 0 : byte >= 0xF0 ? 2 : 1));
    }
    const auto bytes = std::make_shared<const std::string>(text + '\r');
    const auto survey =
        Utf8Text::survey({reinterpret_cast<const std::uint8_t*>(bytes->data()), kSize}, bytes);
    ASSERT_TRUE(survey.valid);
    ASSERT_NE(survey.text, nullptr);
    ASSERT_EQ(survey.text->length(), before.back() + 1);
    for (const std::size_t at : {std::size_t{5}, odd / 2, border - 3, border + 4, border + 2048, kSize - 9})
      EXPECT_EQ(survey.text->positionAt(at), before[at]) << at;
  }
  std::string wrong(kSize, 'a');
  wrong[border] = '\x80';
  wrong += '\r';
  EXPECT_FALSE(Utf8Text::survey({reinterpret_cast<const std::uint8_t*>(wrong.data()), kSize}, {}).valid);
}

TEST(Utf8Text, MatchesWhatDidNotBeginInFrontOfIt) {
  const auto bytes = std::make_shared<const std::string>("elvin said: Kelvin, kelvin é\r");
  const Utf8Text::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
  const OriginalText original(Utf8Text::survey(span, bytes).text);
  const auto matches = OriginalMatches::of(Search(u"kelvin", {}), original);
  ASSERT_NE(matches, nullptr);
  EXPECT_EQ(matches->first(0, original.length()), 12);
  EXPECT_EQ(matches->first(13, original.length()), 20);
}

/// In the rows of matches of large texts they are found ahead. Asked are stretches of the text and all of it,
/// from its front again and again.
void checkRowsOfMatches(const std::string& row, bool inUnits = false) {
  const std::string part = row + std::string(3000, 'b') + row + "THE LESSOR";
  std::string text;
  while (text.size() < (std::size_t{12} << 20U)) {
    for (int i = 0; i < 40'000; ++i) text += row;
    for (int i = 0; i < 40; ++i) text += part;
  }
  const std::size_t apart = text.size();
  text.resize(std::size_t{17} << 20U, 'l');
  const auto bytes = std::make_shared<const std::string>(text + '\r');
  const Utf8Text::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), text.size());
  const auto survey = Utf8Text::survey(span, bytes);
  const OriginalText original = inUnits                  ? OriginalText(base::utf16(text))
                                : survey.text != nullptr ? OriginalText(survey.text)
                                                         : OriginalText(span, true, bytes);

  for (const std::string& needle : {std::string("the Lessor"), std::string(40, 'L') + 'e'}) {
    const auto matches = OriginalMatches::of(Search(base::utf16(needle), {}), original);
    ASSERT_NE(matches, nullptr);
    std::vector<Position> expected;
    Position units = 0;
    for (std::size_t at = 0; at < apart; ++at) {
      if (base::isUtf8Follower(static_cast<std::uint8_t>(text[at]))) continue;
      if (strncasecmp(&text[at], needle.c_str(), needle.size()) == 0) expected.push_back(units);
      units += static_cast<std::uint8_t>(text[at]) >= 0xF0 ? 2 : 1;
    }
    for (const std::size_t count : {std::size_t{3000}, expected.size()}) {
      Position from = 0;
      for (std::size_t i = 0; i < std::min(count, expected.size()); ++i) {
        ASSERT_EQ(matches->first(from, original.length()), expected[i]) << i;
        ASSERT_EQ(matches->first(from, expected[i] + 9), OriginalMatches::kNone) << i;
        from = expected[i] + 1;
      }
    }
    EXPECT_EQ(matches->first(units, original.length()), OriginalMatches::kNone);
  }
}

TEST(Utf8Text, LargeOnesHoldTheirMatchesInRowsAndApart) {
  const std::string row40(40, 'l');
  for (const bool inUnits : {false, true})
    checkRowsOfMatches("ü the Lessee and the LESSOR, 𝒜 the lessor; " + row40 + "E ", inUnits);
  checkRowsOfMatches("a the Lessee and the LESSOR, a the lessor; " + row40 + "E ");
}

TEST(Utf8Text, EveryKindOfProcessorSeesTheSame) {
  if (!hasAvx2()) GTEST_SKIP();
  Generator generate(12);
  for (int round = 0; round < 1000; ++round) {
    const std::string text = generate.bytes();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::vector<std::uint32_t> notes[2];
    Utf8Scan scans[2];
    for (int i : {0, 1}) {
      notes[i].resize(text.size() / kNoteInterval + 1);
      scans[i].notes = notes[i].data();
      scans[i].endRow = utf8Rows(text.size());
    }
    const bool valid = surveyUtf8Anywhere(bytes, text.size(), scans[0]);
    ASSERT_EQ(valid, surveyUtf8Avx2(bytes, text.size(), scans[1]));
    if (!valid) continue;
    ASSERT_EQ(notes[0], notes[1]);
    ASSERT_EQ(std::tie(scans[0].units, scans[0].pairs, scans[0].zeros),
              std::tie(scans[1].units, scans[1].pairs, scans[1].zeros));
    const auto units = static_cast<std::size_t>(generate.upTo(static_cast<int>(scans[0].units)));
    const Utf8Step step = walkUtf8Anywhere(bytes, text.size(), 0, units);
    const Utf8Step other = walkUtf8Avx2(bytes, text.size(), 0, units);
    ASSERT_EQ(std::tie(step.offset, step.left), std::tie(other.offset, other.left));
    ASSERT_EQ(countUtf8Anywhere(bytes, text.size(), 0, step.offset), units - step.left);
    const auto back = static_cast<std::size_t>(generate.upTo(static_cast<int>(units - step.left)));
    if (back == 0) continue;
    const Utf8Step there = walkUtf8Anywhere(bytes, text.size(), 0, units - step.left - back);
    for (const auto walk : {walkBackUtf8Anywhere, walkBackUtf8Avx2}) {
      const Utf8Step reached = walk(bytes, text.size(), step.offset, back);
      ASSERT_EQ(std::tie(reached.offset, reached.left), std::tie(there.offset, there.left));
    }
    ASSERT_EQ(countUtf8Avx2(bytes, text.size(), 0, step.offset), units - step.left);
  }
}

}  // namespace
}  // namespace pluvo::text
