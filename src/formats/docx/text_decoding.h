#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pluvo::docx {

/// Adds a character; a line end is a blank.
void appendCodePoint(std::u16string& units, char32_t c);

/// Adds bytes that a scanner has found to be UTF-8; a line end is a blank.
void appendUtf8(std::u16string& units, std::string_view bytes);

/// The nature of bytes, known to be UTF-8, to XML and to the text.
enum class Plainness : std::uint8_t {
  none,   ///< a control character is among them, or one that could mean more to XML: '&' or ']'
  wide,   ///< they stand for themselves
  ascii,  ///< and are ASCII
};
Plainness plainnessOf(std::string_view utf8);
/// How many units they make.
std::size_t unitsOf(std::string_view utf8);

/// How many bytes there are in front of the first '<', where all of them are plain ASCII; npos elsewhere.
std::size_t plainLength(std::string_view bytes);

/// Without the blanks at both ends.
std::string_view withoutOuterBlanks(std::string_view printable);

/// The blanks with which the bytes of a text begin and end; it is not all blanks.
void outerBlanks(std::string_view bytes, std::string_view& leading, std::string_view& trailing);

/// Takes the blanks at both ends away, and from the bytes, when there are any, those that stand for them.
void trimBlanks(std::u16string& units, std::string_view& bytes);

}  // namespace pluvo::docx
