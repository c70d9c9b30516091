#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::formats::html {

/// References to characters by name or number: "&eacute;", "&#233;", "&#xE9".
struct Reference {
  std::array<char32_t, 2> points{};
  std::uint8_t count = 0;    ///< of code points; 0 where the text begins with no reference
  std::uint16_t length = 0;  ///< of its bytes
  bool isClosed = false;     ///< by a semicolon
};

/// The one that a text begins with, as browsers read it in text. The text begins with "&".
Reference referenceAt(std::string_view text);

/// UTF-16 of an attribute's value in ASCII and references.
std::u16string unitsOfValue(std::string_view value);

}  // namespace pluvo::formats::html
