#include "piece_table.h"

#include "base/little_endian.h"
#include "damage.h"
#include "plc.h"
#include "properties.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

constexpr std::uint8_t kGroup = 1;
constexpr std::uint8_t kPieces = 2;
constexpr std::uint32_t kNarrow = 0x40000000;

errors::DocumentError brokenTable() { return damaged("table of pieces is damaged"); }

}  // namespace

PieceTable PieceTable::read(base::ByteSpan bytes, base::ByteSpan document) {
  PieceTable table;
  std::size_t at = 0;
  while (at + 3 <= bytes.size() && bytes[at] == kGroup) {
    const std::size_t size = base::get16(bytes, at + 1);
    if (size > bytes.size() - at - 3) throw brokenTable();
    table.groups_.push_back(bytes.subspan(at + 3, size));
    at += 3 + size;
  }
  if (at + 5 > bytes.size() || bytes[at] != kPieces) throw brokenTable();
  const std::size_t size = base::get32(bytes, at + 1);
  if (size > bytes.size() - at - 5) throw brokenTable();
  const Plc places(bytes.subspan(at + 5, size), 8);
  for (std::size_t i = 0; i < places.count(); ++i) {
    const base::ByteSpan element = places.element(i);
    const std::uint32_t place = base::get32(element, 2);
    Piece piece;
    piece.from = places.place(i);
    piece.to = places.place(i + 1);
    piece.narrow = (place & kNarrow) != 0;
    piece.offset = piece.narrow ? (place & ~kNarrow) / 2 : place;
    piece.prm = base::get16(element, 6);
    piece.flags = base::get16(element, 0);
    const bool isInOrder = piece.from == table.length() && piece.to > piece.from;
    if (!isInOrder) throw brokenTable();
    const auto length = static_cast<std::uint64_t>(piece.to - piece.from) * piece.width();
    if (piece.offset > document.size() || length > document.size() - piece.offset) throw brokenTable();
    table.pieces_.push_back(piece);
  }
  return table;
}

std::size_t PieceTable::indexAt(text::Position at) const {
  const auto after = std::ranges::upper_bound(pieces_, at, {}, &Piece::from);
  return static_cast<std::size_t>(after - pieces_.begin()) - 1;
}

base::ByteSpan PieceTable::properties(std::uint16_t prm, std::array<std::uint8_t, 3>& room) const {
  if (prm == 0) return {};
  if ((prm & 1U) != 0) {
    const std::size_t group = prm >> 1U;
    return group < groups_.size() ? groups_[group] : base::ByteSpan();
  }
  const std::uint16_t code = codeOfShort(static_cast<std::uint8_t>(prm >> 1U & 0x7FU));
  if (code == 0) return {};
  base::put(std::span<std::uint8_t>(room), 0, code);
  room[2] = static_cast<std::uint8_t>(prm >> 8U);
  return room;
}

char16_t fromNarrow(std::uint8_t byte) {
  static constexpr std::array<char16_t, 32> kUpper = {
      0x80,   0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x8D,   0x8E,   0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x9E,   0x0178};
  return byte < 0x80 || byte > 0x9F ? byte : kUpper[byte - 0x80U];
}

}  // namespace pluvo::doc
