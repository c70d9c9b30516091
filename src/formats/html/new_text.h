#pragma once

#include "charset.h"

#include <string>
#include <string_view>

namespace pluvo::formats::html {

/// Adds a character of text: itself where it has no meaning and the encoding is known to have it, otherwise a
/// reference. In a comment no "-" is put, which could end it.
void appendCharacter(std::string& bytes, char32_t point, const Charset& charset, bool isInComment);

/// A tag without its id and name, so that there are no two of them.
std::string copyOf(std::string_view tag);

/// A tag without what says of a highlight; where a rule gives it one, the copy says otherwise. Empty where
/// nothing would be left.
std::string withoutHighlight(std::string_view tag, std::string_view name, bool isByRule);

/// The beginning of a span for a highlight. More is CSS against the document's own rules.
std::string highlightTag(std::uint8_t colour, std::string_view more);
/// The element for a paragraph's mark, in elements that say how it looks; 0 for no colour.
std::string markLook(std::uint8_t colour, bool isHidden, bool isDeleted);

}  // namespace pluvo::formats::html
