#pragma once

#include "base/utf.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::formats {

/// The sentence that refuses a new text because of a character; the document is named as "A page" is.
std::string refusedCharacter(std::string_view document, char32_t point);

/// The sentence for the first character of a new text that has no place in a document; none where all have.
/// Half of a pair is a character here.
template <class HasPlace>
std::optional<std::string> firstRefused(std::u16string_view text, std::string_view document,
                                        HasPlace hasPlace) {
  while (!text.empty()) {
    const auto [point, units] = base::firstOfUtf16(text);
    if (!hasPlace(point)) return refusedCharacter(document, point);
    text.remove_prefix(units);
  }
  return std::nullopt;
}

/// Whether a character has a place in the text of Word's binary documents, and of those in rich text.
constexpr bool hasPlaceInWordText(char32_t point) {
  if (base::isSurrogate(point)) return false;
  return point >= 0x20 || (point >= 9 && point <= 14) || point == 30 || point == 31;
}

}  // namespace pluvo::formats
