#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::plain {

enum class Encoding { utf8, utf16Little, utf16Big, windows1252 };

constexpr bool isUtf16(Encoding encoding) {
  return encoding == Encoding::utf16Little || encoding == Encoding::utf16Big;
}
constexpr std::size_t unitSize(Encoding encoding) { return isUtf16(encoding) ? 2 : 1; }
std::string_view nameOf(Encoding encoding);

enum class LineEnd { lineFeed, carriageReturnLineFeed, carriageReturn };

char16_t unitOfWindows1252(std::uint8_t byte);
std::optional<std::uint8_t> windows1252Of(char16_t unit);

}  // namespace pluvo::plain
