#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Conversions between text, numbers and bytes, each made in one way everywhere.
namespace pluvo::errors {

/// Without leading zeros or blanks, with a minus sign when negative.
std::u16string decimal(std::int64_t number);

/// Whether the text is a number: a sign, digits, a decimal point and an exponent, blanks around them.
bool isNumeric(std::u16string_view text);

/// The number in the text as a 16-bit integer, a fraction rounded half to even. Throws Fault: kTypeMismatch
/// where there is no number, kOverflow where it does not fit.
std::int16_t toInteger(std::u16string_view text);

/// The value as a 16-bit integer. Throws Fault kOverflow where it does not fit.
std::int16_t narrow(std::int32_t value);

/// With every line end as a word processor's one paragraph mark: a line feed, alone or behind a 13, is
/// that 13.
std::u16string withParagraphMarks(std::u16string_view text);

/// UTF-8; lone surrogates become U+FFFD.
std::string utf8(std::u16string_view text);
/// From UTF-8; bytes that are none become U+FFFD.
std::u16string utf16(std::string_view text);

/// A file's name or path is bytes, and a text everywhere else: its UTF-8 as UTF-16. A byte that is no UTF-8
/// becomes the lone surrogate 0xDC00 + byte, so that any bytes come back as they were.
std::u16string nameText(std::string_view bytes);
/// The bytes of a name. Lone surrogates that stand for no byte are written as if they were characters.
std::string nameBytes(std::u16string_view name);

}  // namespace pluvo::errors
