#include "piece_table.h"

#include "base/little_endian.h"
#include "damage.h"
#include "plc.h"
#include "properties.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

/// The codes of properties that a piece has by a short number; 0 for numbers that stand for none.
constexpr std::array<std::uint16_t, 128> kCodesOfShort = [] {
  struct Short {
    std::uint8_t number;
    std::uint16_t code;
  };
  constexpr Short kAll[] = {
      {0x00, 0x2879}, {0x04, 0x2602}, {0x05, 0x2403}, {0x07, 0x2405}, {0x08, 0x2406}, {0x09, 0x2407},
      {0x0C, 0x260A}, {0x0D, 0x2470}, {0x0E, 0x240C}, {0x0F, 0x2471}, {0x18, 0x2416}, {0x19, 0x2417},
      {0x1D, 0x261B}, {0x25, 0x2423}, {0x2C, 0x242A}, {0x32, 0x2430}, {0x33, 0x2431}, {0x35, 0x2433},
      {0x36, 0x2434}, {0x37, 0x2435}, {0x38, 0x2436}, {0x39, 0x2437}, {0x3A, 0x2438}, {0x41, 0x0800},
      {0x42, 0x0801}, {0x43, 0x0802}, {0x47, 0x0806}, {0x4B, 0x080A}, {0x4D, 0x2A0C}, {0x4E, 0x0858},
      {0x4F, 0x2859}, {0x50, 0x0811}, {0x51, 0x0818}, {0x53, 0x2A33}, {0x55, 0x0835}, {0x56, 0x0836},
      {0x57, 0x0837}, {0x58, 0x0838}, {0x59, 0x0839}, {0x5A, 0x083A}, {0x5B, 0x083B}, {0x5C, 0x083C},
      {0x5E, 0x2A3E}, {0x62, 0x2A42}, {0x68, 0x2A48}, {0x73, 0x2A53}, {0x74, 0x0854}, {0x75, 0x0855},
      {0x76, 0x0856}, {0x78, 0x2640}, {0x7B, 0x2A90}, {0x7C, 0x2A86}, {0x7E, 0x2443}};
  std::array<std::uint16_t, 128> codes{};
  for (const Short& each : kAll) codes[each.number] = each.code;
  return codes;
}();

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
  const std::uint16_t code = kCodesOfShort[prm >> 1U & 0x7FU];
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
