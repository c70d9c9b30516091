#include "text/pieces.h"

#include <gtest/gtest.h>

namespace pluvo::text {
namespace {

TEST(PieceText, NewTextKeepsTheAnchorOfItsNeighbour) {
  PieceText text(OriginalText(std::u16string(u"abcdef")));
  EXPECT_EQ(text.anchorAt(2, true), (Anchor{2, true}));
  text.replace(3, 3, u"XY", text.anchorAt(2, true));
  EXPECT_EQ(text.anchorAt(4, false), (Anchor{2, true}));
  EXPECT_EQ(text.anchorAt(5, false), (Anchor{3, false}));
  text.replace(5, 5, u"Z", text.anchorAt(4, true));
  EXPECT_EQ(text.pieceCount(), 3U) << "text typed on makes no new piece";
  EXPECT_EQ(text.pieceAt(3).length, 3);
}

TEST(PieceText, RefusesMoreThanPositionsReach) {
  static const char16_t unit = u'x';
  PieceText text(OriginalText(std::u16string(u"abc")));
  const std::u16string_view endless(&unit, static_cast<std::size_t>(kMaxLength) - 2);
  EXPECT_THROW(text.replace(1, 1, endless, {}), std::length_error);
  EXPECT_EQ(text.substring(0, 3), u"abc");
}

}  // namespace
}  // namespace pluvo::text
