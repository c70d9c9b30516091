#pragma once

#include "base/bytes.h"
#include "piece_table.h"

#include <algorithm>

/// The text of pieces, as it lies in the WordDocument stream.
namespace pluvo::doc {

inline constexpr char16_t kControls = 0x20;

inline char16_t wideAt(const std::uint8_t* bytes) { return static_cast<char16_t>(bytes[0] | bytes[1] << 8U); }

inline char16_t unitAt(const PieceTable& pieces, base::ByteSpan document, text::Position at) {
  const Piece& piece = pieces.pieces()[pieces.indexAt(at)];
  const std::uint8_t* const bytes = document.data() + piece.offsetOf(at);
  return piece.narrow ? fromNarrow(*bytes) : wideAt(bytes);
}

inline constexpr text::Position kBlock = 32;

/// Whether a block of units of so many bytes has a control character; no branch depends on the units.
template <std::size_t Width>
bool hasControl(const std::uint8_t* bytes) {
  unsigned found = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const char16_t unit = Width == 1 ? char16_t{bytes[i]} : wideAt(bytes + i * 2);
    found |= unit < kControls ? 1U : 0U;
  }
  return found != 0;
}

/// Calls visit(place, unit) with the control characters in [from, to) of a piece until it returns true;
/// whether it did.
template <class Visit>
bool forEachControl(const Piece& piece, base::ByteSpan document, text::Position from, text::Position to,
                    Visit visit) {
  while (from < to) {
    const std::uint8_t* const bytes = document.data() + piece.offsetOf(from);
    const text::Position count = std::min(to - from, kBlock);
    const bool isPlain = count == kBlock && !(piece.narrow ? hasControl<1>(bytes) : hasControl<2>(bytes));
    for (text::Position unit = 0; !isPlain && unit < count; ++unit) {
      const char16_t found =
          piece.narrow ? char16_t{bytes[unit]} : wideAt(bytes + static_cast<std::size_t>(unit) * 2);
      if (found < kControls && visit(from + unit, found)) return true;
    }
    from += count;
  }
  return false;
}

}  // namespace pluvo::doc
