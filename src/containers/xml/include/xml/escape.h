#pragma once

#include <string>
#include <string_view>

namespace pluvo::xml {

/// Whether XML 1.0 can hold the character at all. Lone surrogates, most controls, U+FFFE and U+FFFF it
/// cannot.
bool isCharacter(char32_t c);

/// Appends text as UTF-8 character data. '&', '<' and '>' become references. So does CR, which a reader would
/// take for a line end. The caller has seen to it that isCharacter holds throughout.
void appendEscapedText(std::string& out, std::u16string_view text);

}  // namespace pluvo::xml
