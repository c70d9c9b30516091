#include "same_text.h"

#include "base/bytes.h"
#include "text/utf8_text.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace pluvo::document
