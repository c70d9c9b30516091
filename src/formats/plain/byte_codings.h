#pragma once

#include "encoding.h"
#include "text/byte_coding.h"

namespace pluvo::plain {

/// How the bytes of an encoding stand for units. Null for UTF-8, and where bytes below 80 are not ASCII.
/// Characters beyond U+FFFF and those of more than two bytes are left out. Lives as long as the program.
const text::ByteCoding* byteCodingOf(const Coding& coding);

}  // namespace pluvo::plain
