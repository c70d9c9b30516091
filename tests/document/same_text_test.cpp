#include "same_text.h"

#include "base/bytes.h"
#include "text/utf8_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace pluvo::document {
namespace {

text::OriginalText inUtf8(const std::string& text) {
  const base::Bytes bytes = base::Bytes::of({text.begin(), text.end()});
  return text::OriginalText(text::Utf8Text::survey(bytes.view, bytes.owner).text);
}

TEST(SameText, IsToldFromBytesOnlyWhereTheseBeginAndEndWithCharacters) {
  struct Case {
    std::string original;
    text::Span replaced;
    std::u16string by;
    std::string readBack;
    bool same;
  };
  const Case cases[] = {{"ü one two", {1, 5}, u" x", "ü x two", true},
                        {"ü one two", {1, 5}, u" x", "ü x twö", false},
                        {"ü one two", {1, 5}, u" x", "ü y two", false},
                        {"ü\ra\nb", {2, 3}, u"", "ü\r\n\nb", true},
                        {"ü\ra\nb", {2, 3}, u"", "ü\r\nb\n", false},
                        {"ü one\ntwo", {2, 2}, u"zéro ", "ü zéro one\r\ntwo", true},
                        {"ü𝒜𝒜b", {2, 4}, u"", "ü𝒜b", true},
                        {"ü𝒜𝒜b", {2, 4}, u"", "ü𝒞b", false},
                        {"plain text", {0, 5}, u"Плоский", "Плоский text", true},
                        {"plain text", {0, 5}, u"Плоский", "Плоский test", false}};
  for (const Case& c : cases) {
    const bool ascii = c.original.front() == 'p';
    const std::u16string units(c.original.begin(), c.original.end());
    text::PieceText edited(ascii ? text::OriginalText(units + u'\r') : inUtf8(c.original));
    edited.replace(c.replaced.from, c.replaced.to, c.by, {});
    EXPECT_EQ(sameText(edited, inUtf8(c.readBack), [] {}), c.same) << c.original << " / " << c.readBack;
  }
}

TEST(SameText, IsToldOfLargeTextsInParts) {
  const std::string line = "ü one two three four five six\n";
  std::string original;
  while (original.size() < (std::size_t{18} << 20U)) original += line;
  const auto lines = static_cast<text::Position>(original.size() / line.size());
  text::PieceText edited(inUtf8(original));
  std::string meant;
  for (text::Position i = 0; i < lines; ++i) {
    meant += i % 3 == 0 ? "ü zéro two three four five six\n" : line;
    if (i % 3 != 0) continue;
    const text::Position at = i * 30 + i / 3 + 2;
    edited.replace(at, at + 3, u"zéro", {});
  }
  EXPECT_TRUE(sameText(edited, inUtf8(meant), [] {}));
  for (const std::size_t at :
       {meant.size() / 9, meant.size() / 2 - 20, meant.size() / 2 + 20, meant.size() - 2}) {
    std::string other = meant;
    char& letter = *std::find_if(other.begin() + static_cast<std::ptrdiff_t>(at), other.end(),
                                 [](char each) { return each >= 'a'; });
    letter = static_cast<char>(letter ^ 1);
    EXPECT_FALSE(sameText(edited, inUtf8(other), [] {})) << at;
  }
}

}  // namespace
}  // namespace pluvo::document
