#include "text/pieces.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace pluvo::text {
namespace {

std::u16string gathered(const PieceText& text) {
  std::u16string units;
  text.forEachStretch(0, text.length(), [&](Position start, const Stretch& stretch) {
    EXPECT_EQ(static_cast<std::size_t>(start), units.size());
    for (Position i = 0; i < stretch.length; ++i) units += stretch[i];
    return true;
  });
  return units;
}

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

/// Every character of the twin knows where it came from; the pieces must tell the same.
struct Twin {
  struct Unit {
    char16_t unit;
    Position original;
    Anchor anchor;
  };
  std::vector<Unit> units;

  void replace(Position from, Position to, std::u16string_view text, Anchor anchor) {
    units.erase(units.begin() + from, units.begin() + to);
    std::vector<Unit> added;
    for (const char16_t unit : text) added.push_back({unit, Piece::kNone, anchor});
    units.insert(units.begin() + from, added.begin(), added.end());
  }
};

void expectSame(const PieceText& text, const Twin& twin) {
  ASSERT_TRUE(text.check());
  ASSERT_EQ(text.length(), static_cast<Position>(twin.units.size()));
  std::u16string units;
  for (const auto& unit : twin.units) units += unit.unit;
  ASSERT_EQ(text.substring(0, text.length()), units);
  ASSERT_EQ(gathered(text), units);
  std::size_t i = 0;
  text.forEachPiece([&](const Piece& piece, std::u16string_view newText) {
    for (Position offset = 0; offset < piece.length; ++offset, ++i) {
      const Twin::Unit& unit = twin.units[i];
      ASSERT_EQ(piece.isNew() ? Piece::kNone : piece.original + offset, unit.original);
      if (!piece.isNew()) continue;
      ASSERT_EQ((Anchor{piece.anchor, piece.behindAnchor}), unit.anchor);
      ASSERT_EQ(newText[static_cast<std::size_t>(offset)], unit.unit);
    }
  });
}

TEST(PieceText, BehavesLikeAStringThatKnowsItsOrigins) {
  std::mt19937 random(11);
  const auto upTo = [&](Position n) {
    return static_cast<Position>(random() % (static_cast<unsigned>(n) + 1));
  };
  for (int round = 0; round < 200; ++round) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(upTo(30)));
    Twin twin;
    for (auto& byte : bytes) {
      byte = static_cast<std::uint8_t>("ab\n"[random() % 3]);
      twin.units.push_back(
          {byte == '\n' ? kParagraphMark : char16_t(byte), static_cast<Position>(twin.units.size()), {}});
    }
    PieceText text(OriginalText(bytes, true, nullptr));
    Position at = 0;
    for (int step = 0; step < 30; ++step) {
      const Position from = random() % 3 == 0 ? upTo(text.length()) : std::min(at, text.length());
      const Position to = from + upTo(std::min(text.length() - from, 5));
      const std::u16string added(static_cast<std::size_t>(upTo(3)),
                                 static_cast<char16_t>(u'x' + random() % 2));
      const Anchor anchor = from > 0 ? text.anchorAt(from - 1, true) : Anchor{};
      text.replace(from, to, added, anchor);
      twin.replace(from, to, added, anchor);
      at = from + static_cast<Position>(added.size()) + upTo(3);
      ASSERT_NO_FATAL_FAILURE(expectSame(text, twin));
    }
  }
}

}  // namespace
}  // namespace pluvo::text
