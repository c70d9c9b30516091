#pragma once

#include "code_pages/code_page.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::plain {

using code_pages::Character;
using code_pages::CodePage;
using code_pages::isStray;
using code_pages::strayByte;

enum class Encoding : std::uint8_t { utf8, utf16Little, utf16Big, windows1252, codePage };

/// How bytes stand for characters.
struct Coding {
  Encoding encoding = Encoding::utf8;
  const CodePage* page = nullptr;  ///< of codePage only; lives as long as the program
};

constexpr bool isUtf16(Encoding encoding) {
  return encoding == Encoding::utf16Little || encoding == Encoding::utf16Big;
}
constexpr std::size_t unitSize(Encoding encoding) { return isUtf16(encoding) ? 2 : 1; }

enum class LineEnd : std::uint8_t { lineFeed, carriageReturnLineFeed, carriageReturn };

char16_t unitOfWindows1252(std::uint8_t byte);
std::optional<std::uint8_t> windows1252Of(char16_t unit);
/// Whether Windows-1252 says what every byte stands for.
bool isAssignedInWindows1252(base::ByteSpan bytes);

}  // namespace pluvo::plain
