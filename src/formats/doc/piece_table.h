#pragma once

#include "base/bytes.h"
#include "text/positions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pluvo::doc {

/// A stretch of the text, and where in the WordDocument stream it lies.
struct Piece {
  text::Position from = 0;
  text::Position to = 0;
  std::uint32_t offset = 0;
  bool narrow = false;      ///< one byte a character, else two
  std::uint16_t prm = 0;    ///< properties over those of its pages
  std::uint16_t flags = 0;  ///< what else the table says of it

  std::uint32_t width() const { return narrow ? 1 : 2; }
  std::uint32_t offsetOf(text::Position at) const {
    return offset + static_cast<std::uint32_t>(at - from) * width();
  }
  /// The character that begins at an offset or holds it.
  text::Position at(std::uint32_t place) const {
    return from + static_cast<text::Position>((place - offset) / width());
  }
  std::uint32_t end() const { return offsetOf(to); }
};

/// The pieces that a text is made of, and the properties that pieces have of their own.
class PieceTable {
 public:
  /// Throws DocumentError: damaged where the pieces are not in order, or not all in the stream.
  static PieceTable read(base::ByteSpan bytes, base::ByteSpan document);

  std::span<const Piece> pieces() const { return pieces_; }
  text::Position length() const { return pieces_.empty() ? 0 : pieces_.back().to; }
  /// The groups of properties that prms name.
  std::span<const base::ByteSpan> groups() const { return groups_; }
  /// The number of the piece in which a character lies.
  std::size_t indexAt(text::Position at) const;

  /// The properties that a prm stands for. A short one is put into room.
  base::ByteSpan properties(std::uint16_t prm, std::array<std::uint8_t, 3>& room) const;

 private:
  std::vector<Piece> pieces_;
  std::vector<base::ByteSpan> groups_;
};

/// The character of a byte of narrow text.
char16_t fromNarrow(std::uint8_t byte);

}  // namespace pluvo::doc
