#pragma once

#include "base/bytes.h"
#include "looks.h"
#include "styles.h"

#include <cstdint>
#include <string>

/// Properties of edited text, made from the old ones.
namespace pluvo::doc {

inline std::string stringOf(base::ByteSpan bytes) { return {bytes.begin(), bytes.end()}; }
inline base::ByteSpan bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// Of characters, those that ordinary text beside them takes over: no highlight, nothing that makes them
/// stand for something else, no tracked change but a deletion where the text lies in one. Properties of other
/// things are left out.
std::string forNewCharacters(base::ByteSpan properties, bool deleted);

/// Of a paragraph, those that a new one takes over: it ends no cell and no row.
std::string forNewParagraph(base::ByteSpan properties);

/// A new paragraph's properties in tables of another depth.
std::string atDepth(const std::string& properties, std::int32_t depth);

/// The properties with another highlight.
std::string withoutHighlight(base::ByteSpan properties);
std::string highlightProperty(std::uint8_t colour);

}  // namespace pluvo::doc
