#pragma once

#include "base/bytes.h"
#include "byte_map.h"
#include "detection.h"
#include "text/original.h"

#include <array>

namespace pluvo::plain {

/// A text in memory and the way back to its bytes (those after the byte order mark). The text has one
/// paragraph mark more than the bytes, at its end.
struct Decoded {
  text::OriginalText text;
  ByteMap map;
  LineEnd commonLineEnd = LineEnd::lineFeed;
};

/// Whether each unit of the text is one byte of the same value, but for line feeds.
bool liesAsText(const Storage& storage);

/// Of a text that detect accepted: one in UTF-8 with bytes that are none, or in a code page with more than
/// one unit or two bytes a character. The file's memory is released on the way.
Decoded decode(base::ByteSpan bytes, const Storage& storage, const base::Bytes& file);

/// The line end that a new paragraph gets, given how many there are of each, in the order of LineEnd.
LineEnd commonLineEnd(const std::array<std::size_t, 3>& counts, const Storage& storage);

}  // namespace pluvo::plain
