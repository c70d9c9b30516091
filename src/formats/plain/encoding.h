#pragma once

#include "code_pages/coding.h"

#include <cstdint>

namespace pluvo::plain {

using code_pages::Character;
using code_pages::CodePage;
using code_pages::Coding;
using code_pages::Encoding;
using code_pages::firstCharacter;
using code_pages::firstOfUtf8;
using code_pages::isAssignedInWindows1252;
using code_pages::isStray;
using code_pages::isUtf16;
using code_pages::strayByte;
using code_pages::unitOfWindows1252;
using code_pages::unitSize;
using code_pages::utf16UnitAt;
using code_pages::windows1252Of;
using code_pages::withEncoding;

enum class LineEnd : std::uint8_t { lineFeed, carriageReturnLineFeed, carriageReturn };

}  // namespace pluvo::plain
