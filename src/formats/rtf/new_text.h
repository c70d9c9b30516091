#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::rtf {

/// Adds text in ASCII, in any font and code page the same. After a character by number stand as many
/// characters for older programs as the place asks for.
void appendEncoded(std::string& bytes, std::u16string_view text, std::uint16_t fallback);

/// Whether one may not put the second byte directly after a control word.
constexpr bool goesOnInWord(char next) {
  return (next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z') || (next >= '0' && next <= '9') ||
         next == '-' || next == ' ';
}

constexpr bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

}  // namespace pluvo::rtf
