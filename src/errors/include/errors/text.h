#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Conversions between text and numbers as the dialog's host makes them.
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

/// UTF-8; lone surrogates become U+FFFD.
std::string utf8(std::u16string_view text);
/// From UTF-8; bytes that are none become U+FFFD.
std::u16string utf16(std::string_view text);

}  // namespace pluvo::errors
