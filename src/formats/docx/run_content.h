#pragma once

#include "properties.h"

#include <string>
#include <string_view>

namespace pluvo::docx {

/// Whether the character is an element of its own in a run, or a paragraph's mark, and no text.
bool standsAlone(char16_t unit);

/// The element of such a character.
std::string elementOf(char16_t unit, const Markup& markup);

/// Text as it is written in an element. Throws DocumentError (encoding) for half a surrogate pair.
void appendText(std::string& out, std::u16string_view units);

/// The element around text so written; tag is its qualified name. Blanks that are no text come along and are
/// none here either.
void appendTextElement(std::string& out, std::string_view tag, std::string_view text,
                       std::string_view leading = {}, std::string_view trailing = {});
void appendBlankElement(std::string& out, std::string_view tag, std::string_view blanks);

/// A run with a mark of a complex field: begin, separate or end.
std::string fieldMark(std::string_view type, const Markup& markup);
/// The complex field that says the same as the start tag of a simple one with this instruction.
std::string fieldBeginning(std::u16string_view instruction, const Markup& markup);

/// Everything a run holds for this text, which has no paragraph marks.
void appendContent(std::string& out, std::u16string_view units, std::string_view tag, const Markup& markup);

}  // namespace pluvo::docx
