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

/// The properties that ordinary text beside these characters takes over. A highlight is not among them, and
/// nothing that makes a character stand for something else. Of tracked changes only the deletion is, where
/// the text lies in one. Properties of other things are left out.
std::string forNewCharacters(base::ByteSpan properties, bool deleted);

/// Of a paragraph, those that a new one takes over: it ends no cell and no row.
std::string forNewParagraph(base::ByteSpan properties);

/// A new paragraph's properties in tables of another depth.
std::string atDepth(const std::string& properties, std::int32_t depth);

/// The properties with another highlight.
std::string withoutHighlight(base::ByteSpan properties);
std::string highlightProperty(std::uint8_t colour);

}  // namespace pluvo::doc
