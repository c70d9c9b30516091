#include "formats/refused_character.h"

#include <array>
#include <cstdio>

namespace pluvo::formats {

std::string refusedCharacter(std::string_view document, char32_t point) {
  std::array<char, 16> code{};
  std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(point));
  return std::string(document) + " cannot hold the character " + code.data() + "; leave it out of the text.";
}

}  // namespace pluvo::formats
