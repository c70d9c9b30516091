#include "text/search.h"

#include "characters.h"
#include "support/dice.h"
#include "text/original_matches.h"
#include "text/utf8_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace pluvo::text {
namespace {

using Visibilities = RunMap<Visibility>;

/// The rules of a find, one character at a time.
class PlainSearch {
 public:
  PlainSearch(const PieceText& text, const Visibilities& visibility, View view, Position from, Position to) {
    for (Position p = 0; p < text.length(); ++p) {
      const bool shown = isVisible(visibility.valueAt(p), view);
      const bool barrier = !shown && text.at(p) == kCellMark;
      if (shown) visible_.push_back(text.at(p));
      if (p < from || p >= to || !(shown || barrier)) continue;
      units_ += text.at(p);
      positions_.push_back(p);
      visibleIndex_.push_back(shown ? visible_.size() - 1 : visible_.size());
    }
  }

  std::optional<Span> find(const std::u16string& needle, SearchFlags flags) const {
    if (needle.empty() || needle.find(kCellMark) != needle.npos) return std::nullopt;
    for (std::size_t at = 0; at + needle.size() <= units_.size(); ++at) {
      const auto same = [&](char16_t a, char16_t b) {
        return asLineEnd(a) == asLineEnd(b) || (!flags.matchCase && foldCase(a) == foldCase(b));
      };
      const auto begin = units_.begin() + static_cast<std::ptrdiff_t>(at);
      if (!std::equal(needle.begin(), needle.end(), begin, same)) continue;
      const std::size_t last = at + needle.size() - 1;
      const auto isInside = [&](char16_t end) { return flags.wholeWord && asLineEnd(end) != kParagraphMark; };
      if (isInside(needle.front()) && wordEndsAt(visibleIndex_[at])) continue;
      if (isInside(needle.back()) && wordStartsAt(visibleIndex_[last] + 1)) continue;
      return Span{positions_[at], positions_[last] + 1};
    }
    return std::nullopt;
  }

 private:
  bool wordEndsAt(std::size_t i) const {
    if (i == 0) return false;
    const char16_t unit = visible_[i - 1];
    if (!isLowSurrogate(unit)) return isWordCharacter(unit);
    return i > 1 && isHighSurrogate(visible_[i - 2]) &&
           isWordCharacter(joinSurrogates(visible_[i - 2], unit));
  }
  bool wordStartsAt(std::size_t i) const {
    if (i >= visible_.size()) return false;
    const char16_t unit = visible_[i];
    if (!isHighSurrogate(unit)) return isWordCharacter(unit);
    return i + 1 < visible_.size() && isLowSurrogate(visible_[i + 1]) &&
           isWordCharacter(joinSurrogates(unit, visible_[i + 1]));
  }

  std::u16string visible_;
  std::u16string units_;
  std::vector<Position> positions_;
  std::vector<std::size_t> visibleIndex_;
};

std::optional<Span> find(const std::u16string& needle, SearchFlags flags, const std::u16string& haystack) {
  const PieceText text{OriginalText(haystack)};
  return Search(needle, flags)
      .find(text, Visibilities(text.length(), kEverywhere), View::results, 0, text.length());
}

constexpr SearchFlags kExact{true, false};
constexpr SearchFlags kFolded{false, false};
constexpr SearchFlags kWords{false, true};

TEST(Search, FollowsTheRules) {
  struct Case {
    std::u16string needle;
    std::u16string haystack;
    Position from;  ///< of the match, -1 for none
    SearchFlags flags;
  };
  const Case cases[] = {{u"", u"abc", -1, kFolded},
                        {u"^p", u"a\r^p", 2, kExact},
                        {u"ab", u"aB Ab AB ab", 9, kExact},
                        {u"STRASSE", u"stra\u00DFe Strasse", 7, kFolded},
                        {u"\u00E9T\u00C9", u"- \u00C9t\u00E9", 2, kFolded},
                        {u"\u03C3", u"\u03A3", 0, kFolded},
                        {u"k", u"\u212A", 0, kFolded},
                        {u"\u00B5m", u"1 \u039CM", 2, kFolded},
                        {u"\"", u"\u201C\"", 1, kFolded},
                        {u"a\ab", u"a\ab", -1, kFolded},
                        {u"\xD83D", u"x\xD83D\xDE00", 1, kFolded},
                        {u"cat", u"cats concat cat", 12, kWords},
                        {u"cat", u"cat1 \u0431cat cat\u0301 _cat_", 16, kWords},
                        {u"cat",
                         u"\xD835\xDC00"
                         u"cat cat\xD835\xDC00 \xD83D\xDE00"
                         u"cat",
                         14, kWords},
                        {u"John", u"Johnson John's", 8, kWords},
                        {u"a b", u"xa b a bx a b", 10, kWords},
                        {u"a\rb", u"a\nb a\vB", 4, kFolded},
                        {u"\r\r", u"a\rb\v\rc", 3, kExact},
                        {u"\rb", u"a\rbc a\rb", 6, kWords}};
  for (const Case& c : cases) {
    const auto match = find(c.needle, c.flags, c.haystack);
    EXPECT_EQ(match ? match->from : -1, c.from) << testing::PrintToString(c.needle);
    EXPECT_TRUE(!match || match->length() == static_cast<Position>(c.needle.size()));
  }
}

TEST(Search, RunsAcrossWhatTheViewHides) {
  const PieceText text{OriginalText(std::u16string(u"be\x13 PAGE \x14gin\x15 ne\axt"))};
  Visibilities visibility;
  visibility.append(2, kEverywhere);
  visibility.append(8, kInCodes);
  visibility.append(3, kInResults);
  visibility.append(1, kInCodes);
  visibility.append(3, kEverywhere);
  visibility.append(1, kNowhere);
  visibility.append(2, kEverywhere);
  const auto find = [&](const std::u16string& needle, View view, Position from, Position to) {
    return Search(needle, kFolded).find(text, visibility, view, from, to);
  };
  EXPECT_EQ(find(u"begin", View::results, 0, 20), (Span{0, 13}));
  EXPECT_EQ(find(u"begin", View::results, 0, 12), std::nullopt);
  EXPECT_EQ(find(u"begin", View::codes, 0, 20), std::nullopt);
  EXPECT_EQ(find(u"page", View::codes, 0, 20), (Span{4, 8}));
  EXPECT_EQ(find(u"page", View::results, 0, 20), std::nullopt);
  EXPECT_EQ(find(u"next", View::results, 0, 20), std::nullopt) << "a hidden cell mark ends its cell";
  EXPECT_EQ(find(u"xt", View::results, 0, 20), (Span{18, 20}));
}

TEST(Search, StaysLinearOnRepetitiveTexts) {
  std::u16string haystack(1 << 20, u'a');
  std::u16string needle(1 << 16, u'a');
  needle += u'b';
  EXPECT_EQ(find(needle, kExact, haystack), std::nullopt);
  haystack += u'b';
  EXPECT_EQ(find(needle, kFolded, haystack)->to, static_cast<Position>(haystack.size()));
  needle.back() = u'a';
  haystack += needle;
  EXPECT_EQ(find(needle, kWords, haystack), std::nullopt);
}

enum class Lies { narrow, wide, utf8 };

class Generator : public Dice {
 public:
  using Dice::Dice;

  /// Long stretches, of few patterns, with short pieces between.
  PieceText pieces(std::u16string_view alphabet, Lies lies) {
    std::u16string units = text(oneIn(3) ? upTo(9000) : upTo(60), alphabet);
    if (oneIn(2))
      std::fill(units.begin(), units.begin() + static_cast<Position>(units.size()) / 2, alphabet[0]);
    PieceText made(lies == Lies::narrow
                       ? OriginalText(bytes_ = {units.begin(), units.end()}, oneIn(2), nullptr)
                   : lies == Lies::utf8 ? inUtf8(units)
                                        : OriginalText(units));
    for (Position edits = upTo(12); edits > 0; --edits) {
      const Position from = upTo(made.length());
      made.replace(from, from + upTo(std::min(made.length() - from, 3)), text(upTo(4), alphabet), {});
    }
    return made;
  }

  Visibilities visibilities(Position length) {
    if (oneIn(2)) return Visibilities(length, kEverywhere);
    Visibilities map;
    while (map.length() < length) {
      const auto value = static_cast<Visibility>(std::max(upTo(7), 4) - 4);
      map.append(std::min(length - map.length(), upTo(oneIn(4) ? 4000 : 12)), oneIn(2) ? kEverywhere : value);
    }
    return map;
  }

 private:
  /// With each half of a pair as a pair.
  static OriginalText inUtf8(const std::u16string& units) {
    auto bytes = std::make_shared<std::string>("ü");
    for (const char16_t unit : units) {
      const char32_t point = isHighSurrogate(unit) || isLowSurrogate(unit) ? 0x10400 : unit;
      if (point < 0x80) {
        *bytes += static_cast<char>(point);
      } else if (point < 0x800) {
        *bytes += {static_cast<char>(0xC0 | point >> 6), static_cast<char>(0x80 | (point & 0x3F))};
      } else {
        *bytes += point > 0xFFFF ? "𐐀" : "\u212A";
      }
    }
    *bytes += '\r';
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes->data());
    return OriginalText(Utf8Text::survey({data, bytes->size() - 1}, bytes).text);
  }

  std::vector<std::uint8_t> bytes_;
};

/// Matches in the original, asked for mostly front to back.
void checkInOriginal(const Search& search, const OriginalText& original, Generator& generate) {
  const auto matches = OriginalMatches::of(search, original);
  const PieceText text(original);
  const Visibilities all(text.length(), kEverywhere);
  Position from = 0;
  for (int asked = 0; matches != nullptr && !matches->gaveUp() && asked < 8; ++asked) {
    from = generate.upTo(std::min(text.length(), generate.oneIn(8) ? kMaxLength : from + 2000));
    const Position to = text.length() - generate.upTo(generate.oneIn(2) ? 0 : text.length() - from);
    const auto expected = search.find(text, all, View::results, from, to);
    const Position found = matches->first(from, to);
    ASSERT_TRUE(matches->gaveUp() || found == (expected ? expected->from : OriginalMatches::kNone));
  }
}

TEST(Search, FindsWhatReadingEveryCharacterFinds) {
  Generator generate(3);
  const std::u16string_view narrowUnits = u"aAb\r\n\v\u00B5";
  const std::u16string_view utf8Units = u"aAbkK\u212A\u03BC\u00B5\u03A1\u03C1\r\n\v\a\xD801\xDC00";
  const std::u16string_view wideUnits = u"aAbkK\u212A\u03BC\u00B5\u03A1\u03C1\r\v\a\xD801\xDC00";
  for (int round = 0; round < 4500; ++round) {
    const Lies lies = static_cast<Lies>(generate.upTo(2));
    const auto alphabet = (lies == Lies::narrow ? narrowUnits
                           : lies == Lies::wide ? wideUnits
                                                : utf8Units)
                              .substr(generate.oneIn(3) ? 2 : 0);
    const PieceText text = generate.pieces(alphabet.substr(0, generate.oneIn(2) ? 2 : alphabet.npos), lies);
    const Visibilities visibility = generate.visibilities(text.length());
    const View view = generate.oneIn(2) ? View::results : View::codes;
    const Position from = generate.upTo(text.length());
    const Position to = text.length() - generate.upTo(generate.oneIn(2) ? 0 : text.length() - from);
    std::u16string needle;
    if (generate.oneIn(2) && from < to) {
      needle = visibleText(text, visibility, view, to - generate.upTo(std::min(to - from, 40)), to);
    } else {
      needle = generate.text(1 + generate.upTo(4), alphabet);
    }
    const SearchFlags flags{generate.oneIn(2), generate.oneIn(3)};
    const auto expected = PlainSearch(text, visibility, view, from, to).find(needle, flags);
    ASSERT_EQ(Search(needle, flags).find(text, visibility, view, from, to), expected)
        << "round " << round << ", needle " << testing::PrintToString(needle);
    ASSERT_NO_FATAL_FAILURE(checkInOriginal(Search(needle, flags), text.original(), generate)) << round;
    if (const auto whole = text.wholeStretch()) {
      const VisibleText shown(*whole, visibility, view);
      ASSERT_EQ(Search(needle, flags).find(shown, text, visibility, view, from, to), expected)
          << "round " << round << ", needle " << testing::PrintToString(needle);
    }
  }
}

}  // namespace

void PrintTo(const Span& span, std::ostream* out) { *out << '[' << span.from << ", " << span.to << ')'; }

}  // namespace pluvo::text
