#pragma once

#include <cstdint>
#include <string_view>

/// Numbers as the dialog and the engine take them: 16 bits, and a Fault where that cannot be.
namespace pluvo::errors {

/// Whether the text is a number: a sign, digits, a decimal point and an exponent, blanks around them.
bool isNumeric(std::u16string_view text);

/// The number in the text as a 16-bit integer, a fraction rounded half to even. Throws Fault: kTypeMismatch
/// where there is no number, kOverflow where it does not fit.
std::int16_t toInteger(std::u16string_view text);

/// The value as a 16-bit integer. Throws Fault kOverflow where it does not fit.
std::int16_t narrow(std::int32_t value);

}  // namespace pluvo::errors
