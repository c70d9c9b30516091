#include "text/coded_text.h"

#include "coded_scan.h"
#include "scan.h"
#include "support/dice.h"
#include "text/original_matches.h"
#include "text/search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::text {
namespace {

using Kind = ByteCoding::Kind;

/// With most leads all second bytes from 40 to FC make a unit, but for 7F, with the odd ones below A0 those
/// from 40 to 9E.
bool isPair(unsigned lead, unsigned second) {
  const bool isFull = lead % 2 == 0 || lead > 0xA0;
  return second >= 0x40 && second <= (isFull ? 0xFCU : 0x9EU) && second != 0x7F;
}
/// Bytes are Latin-1, but for leads from 81 to 9F and from E0 to FC, and A0, which stands for nothing.
std::unique_ptr<const ByteCoding> newCoding(Kind kind) {
  if (kind != Kind::bytes && kind != Kind::pairs) return std::make_unique<const ByteCoding>(kind);
  std::array<char16_t, 256> singles{};
  std::vector<ByteCoding::Lead> leads;
  for (unsigned byte = 0; byte < 256; ++byte) {
    singles[byte] = byte == 0xA0 ? ByteCoding::kNone : static_cast<char16_t>(byte);
    if (kind == Kind::bytes || !((byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC))) continue;
    singles[byte] = ByteCoding::kNone;
    ByteCoding::Lead lead{static_cast<std::uint8_t>(byte)};
    for (unsigned second = 0; second < 256; ++second) {
      lead.pairs[second] = isPair(byte, second)
                               ? static_cast<char16_t>(0x3000 + (byte - 0x80U) * 256 + second)
                               : ByteCoding::kNone;
    }
    leads.push_back(lead);
  }
  return std::make_unique<const ByteCoding>(singles, leads);
}

const ByteCoding* madeUp(Kind kind) {
  static std::map<Kind, std::unique_ptr<const ByteCoding>> all;
  auto& made = all[kind];
  if (made == nullptr) made = newCoding(kind);
  return made.get();
}

/// Bytes read one unit after the other.
struct Plain {
  bool valid = true;
  std::u16string units;
  std::vector<std::size_t> offsets;

  Plain(const std::string& bytes, const ByteCoding& coding) {
    const std::size_t wide = coding.leastBytes();
    const auto at = [&](std::size_t i) -> unsigned {
      return i < bytes.size() ? static_cast<std::uint8_t>(bytes[i]) : 0;
    };
    const auto unitAt = [&](std::size_t i) -> char16_t {
      if (i >= bytes.size()) return 0;
      if (wide == 1) return static_cast<char16_t>(at(i));
      const bool little = coding.kind() == Kind::littleUnits;
      return static_cast<char16_t>(at(i + (little ? 1 : 0)) << 8U | at(i + (little ? 0 : 1)));
    };
    for (std::size_t i = 0; i < bytes.size();) {
      char16_t unit = unitAt(i);
      std::size_t length = wide;
      if (wide == 1 && coding.isLead(static_cast<std::uint8_t>(at(i)))) {
        const unsigned second = at(i + 1);
        valid = valid && isPair(unit, second);
        unit = static_cast<char16_t>(0x3000 + (unit - 0x80U) * 256 + second);
        length = 2;
      } else if (wide == 1) {
        valid = valid && unit != 0xA0;
      }
      if (unit == u'\r' && unitAt(i + wide) == u'\n' && length == wide) length = 2 * wide;
      units += unit == u'\n' ? u'\r' : unit;
      offsets.push_back(i);
      i += length;
    }
  }
};

class Generator : public Dice {
 public:
  using Dice::Dice;
  std::string bytes(const ByteCoding& coding) {
    static const std::string parts[] = {"a", "the text of a lease ", "\r", "\n", "\r\n", "\xFE", "\xB1"};
    static const std::string pairs[] = {"\x82\x61",
                                        "\x81\x61",
                                        "\x82\x81",
                                        "\x81\x81",
                                        "\xE0\xFC",
                                        "\x82\x82\x82\x82",
                                        "lease\x82\x6C\x65\x61\x73\x65"};
    std::string all;
    const bool mayPair = coding.kind() == Kind::pairs;
    for (int left = upTo(oneIn(2) ? 20 : 1500); left > 0; --left)
      all += mayPair && oneIn(2) ? of(pairs) : of(parts);
    // As many bytes for a unit as there may be.
    for (int left = oneIn(8) ? 600 : 0; left > 0; --left) all += left > 1 ? "\r\n" : "lease";
    if (!coding.isUtf16()) {
      if (oneIn(4)) all.insert(static_cast<std::size_t>(upTo(std::ssize(all))), oneIn(2) ? "\xA0" : "\x81");
      return all;
    }
    std::string wide;
    for (const char byte : all) {
      const char other = oneIn(9) ? byte : '\0';
      wide += coding.kind() == Kind::littleUnits ? std::string{byte, other} : std::string{other, byte};
    }
    return wide;
  }
};

class CodedTextOf : public testing::TestWithParam<Kind> {};

TEST_P(CodedTextOf, IsWhatReadingEveryUnitTells) {
  const ByteCoding* const coding = madeUp(GetParam());
  Generator generate(17);
  for (int round = 0; round < 800; ++round) {
    const std::string bytes = generate.bytes(*coding);
    const Plain expected(bytes, *coding);
    const auto held = std::make_shared<const std::string>(bytes + '\r');
    const CodedText::Bytes span(reinterpret_cast<const std::uint8_t*>(held->data()), bytes.size());
    const auto survey = CodedText::survey(span, held, *coding);
    ASSERT_EQ(survey.valid, expected.valid) << "round " << round;
    if (!survey.valid) continue;
    const CodedText& text = *survey.text;
    const std::u16string units = expected.units + u'\r';
    ASSERT_EQ(static_cast<std::size_t>(text.length()), units.size());
    for (int turn = 0; turn < 100; ++turn) {
      const Position position = generate.upTo(text.length() - 1);
      const auto index = static_cast<std::size_t>(position);
      const std::size_t offset = text.placeOf(position).offset;
      ASSERT_EQ(offset, index < expected.offsets.size() ? expected.offsets[index] : bytes.size());
      ASSERT_EQ(text[position], units[index]);
      ASSERT_EQ(text.positionAt(offset), position);
      ASSERT_TRUE(text.beginsUnit(offset));
      const Position to = position + generate.upTo(std::min(text.length() - position, 700));
      std::u16string copy(static_cast<std::size_t>(to - position), u' ');
      text.copy(position, to, copy.data());
      ASSERT_EQ(copy, units.substr(index, copy.size())) << "round " << round << ", " << position;
      const std::size_t after = text.placeOf(to).offset;
      if (to < text.length()) {
        ASSERT_EQ(text.unitsIn(offset, after), copy.size());
        ASSERT_EQ(text.walk(offset, to - position).offset, after);
      }
      const auto any = static_cast<std::size_t>(generate.upTo(std::ssize(bytes)));
      const bool begins =
          any == bytes.size() || std::binary_search(expected.offsets.begin(), expected.offsets.end(), any);
      ASSERT_EQ(text.beginsUnit(any), begins) << "round " << round << ", " << any;
    }
  }
}

TEST_P(CodedTextOf, HoldsTheSameMatchesAsItsUnits) {
  const ByteCoding* const coding = madeUp(GetParam());
  Generator generate(19);
  static const std::u16string needles[] = {u"lease",        u"LEASE",  u"a", u"\r", u"a\rthe",
                                           u"\u31F4\u3261", u"\u3261", u"þ", u"Ж",  u"of a lease \u3261",
                                           u"e\r\r"};
  for (int round = 0; round < 400; ++round) {
    const std::string bytes = generate.bytes(*coding);
    const auto held = std::make_shared<const std::string>(bytes + '\r');
    const CodedText::Bytes span(reinterpret_cast<const std::uint8_t*>(held->data()), bytes.size());
    const auto survey = CodedText::survey(span, held, *coding);
    if (!survey.valid) continue;
    const PieceText coded{OriginalText(survey.text)};
    const PieceText plain{OriginalText(Plain(bytes, *coding).units + u'\r')};
    const RunMap<Visibility> visibility(coded.length(), kEverywhere);
    const std::u16string needle = generate.of(needles);
    const SearchFlags flags{.matchCase = generate.oneIn(2)};
    const Search search(needle, flags);
    const auto matches = OriginalMatches::of(search, coded.original());
    for (Position from = 0; from < coded.length();) {
      const auto expected = search.find(plain, visibility, View::results, from, plain.length());
      const auto found = search.find(coded, visibility, View::results, from, coded.length());
      ASSERT_EQ(found.has_value(), expected.has_value()) << "round " << round << " from " << from;
      if (matches != nullptr && !matches->gaveUp()) {
        const Position first = matches->first(from, coded.length());
        if (!matches->gaveUp()) {
          ASSERT_EQ(first, expected ? expected->from : OriginalMatches::kNone)
              << "round " << round << " from " << from;
        }
      }
      if (!expected) break;
      ASSERT_EQ(found->from, expected->from) << "round " << round;
      from = expected->from + 1 + generate.upTo(200);
    }
  }
}

/// Odd bytes at every place in and across blocks, with any set of vectors.
TEST_P(CodedTextOf, IsSurveyedAlikeByEveryProcessor) {
  const ByteCoding* const coding = madeUp(GetParam());
  for (std::size_t at = 0; at < 196; ++at) {
    for (const std::string odd :
         {"\xA0", "\x81", "\x81\xA1", "\x82\x7F", "\x82\x81", "\x91\x61", "\x91\xA1", "\r\n"}) {
      std::string bytes(at / 2 * 2 + (at < 128 ? 132 - at / 2 * 2 : 4), 'b');
      bytes.replace(at, odd.size(), odd);
      const Plain expected(bytes, *coding);
      for (const CodedLooks* looks : {&kCodedAnywhere, hasAvx2() ? &kCodedAvx2 : &kCodedAnywhere,
                                      hasAvx512Tables() ? &kCodedAvx512 : &kCodedAnywhere}) {
        std::uint32_t note = 0;
        CodedScan scan{&note};
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.c_str());
        ASSERT_EQ(looks->survey(data, bytes.size(), coding->tables(), scan), expected.valid) << at;
        if (!expected.valid) continue;
        const std::size_t middle = expected.units.size() / 2;
        const std::size_t offset = expected.offsets[middle];
        ASSERT_EQ(scan.units, expected.units.size()) << at;
        ASSERT_EQ(looks->walk(data, bytes.size(), coding->tables(), 0, false, middle).offset, offset);
        ASSERT_EQ(looks->count(data, bytes.size(), coding->tables(), 0, false, offset).units, middle);
      }
    }
  }
}

/// Looking for where pairs begin may cost so much that a text is decoded instead.
TEST(CodedText, IsSearchedToItsEndWhereHitsLieInTheMiddleOfPairs) {
  const auto bytes = std::make_shared<std::string>();
  for (int block = 0; block < 50; ++block) {
    for (int pair = 0; pair < 200; ++pair) *bytes += "\x82\x83";
    *bytes += "\x83\x82\x82\x90";
  }
  *bytes += '\r';
  const CodedText::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
  const PieceText text{OriginalText(CodedText::survey(span, bytes, *madeUp(Kind::pairs)).text)};
  const RunMap<Visibility> visible(text.length(), kEverywhere);
  const Search search(text.substring(200, 201), {true, false});
  Position from = 0;
  for (int block = 0; block < 50; ++block) {
    const auto found = search.find(text, visible, View::codes, from, text.length());
    ASSERT_TRUE(found) << block;
    EXPECT_EQ(found->from, block * 202 + 200);
    from = found->to;
  }
}

TEST(CodedText, IsSearchedWithinItselfWhereAnotherProgramWritesIntoTheFile) {
  const auto bytes = std::make_shared<std::string>();
  for (int line = 0; line < 4000; ++line) *bytes += "\r\n";
  *bytes += '\r';
  const CodedText::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
  const PieceText text{OriginalText(CodedText::survey(span, bytes, *madeUp(Kind::bytes)).text)};
  bytes->assign(bytes->size() - 6, ' ');
  *bytes += "lease\r";
  const RunMap<Visibility> visible(text.length(), kEverywhere);
  const auto found = Search(u"lease", {true, true}).find(text, visible, View::codes, 0, text.length());
  EXPECT_TRUE(!found || found->to <= text.length());
}

/// Nothing but bytes that may begin a pair lies around the borders of parts.
TEST(CodedText, LargeOnesThatAreLookedOverInPartsHaveTheirUnitsWhereSmallOnesDo) {
  const ByteCoding& coding = *madeUp(Kind::pairs);
  for (const std::size_t front : {std::size_t{0}, std::size_t{1}}) {
    const auto bytes = std::make_shared<std::string>(front, 'a');
    bytes->resize((std::size_t{17} << 20U) + front, '\x82');
    bytes->replace(bytes->size() - 4, 4, "\r\nbb");
    *bytes += '\r';
    const CodedText::Bytes span(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size() - 1);
    const CodedText::Survey survey = CodedText::survey(span, bytes, coding);
    ASSERT_TRUE(survey.valid);
    const auto pairs = static_cast<Position>((span.size() - front - 4) / 2);
    const auto before = static_cast<Position>(front);
    EXPECT_EQ(survey.text->length(), before + pairs + 4);
    EXPECT_EQ(survey.pairs, 1U);
    for (Position pair = 1; pair < pairs; pair += pairs / 50)
      EXPECT_EQ(survey.text->placeOf(before + pair).offset, front + 2 * static_cast<std::size_t>(pair));
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, CodedTextOf,
                         testing::Values(Kind::bytes, Kind::pairs, Kind::littleUnits, Kind::bigUnits));

}  // namespace
}  // namespace pluvo::text
