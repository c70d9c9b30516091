#pragma once

#include "code_pages/code_page.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace pluvo::code_pages {

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

char16_t unitOfWindows1252(std::uint8_t byte);
std::optional<std::uint8_t> windows1252Of(char16_t unit);
/// Whether Windows-1252 says what every byte stands for.
bool isAssignedInWindows1252(base::ByteSpan bytes);

/// The 16-bit unit at an offset.
template <Encoding kEncoding>
char16_t utf16UnitAt(base::ByteSpan bytes, std::size_t at) {
  constexpr bool kLittle = kEncoding == Encoding::utf16Little;
  return static_cast<char16_t>(bytes[at + (kLittle ? 1 : 0)] << 8 | bytes[at + (kLittle ? 0 : 1)]);
}

inline Character firstOfUtf8(base::ByteSpan bytes) {
  const base::Utf8Character first = base::firstOfUtf8(bytes.data(), bytes.size());
  return first.bytes == 0 ? strayByte(bytes[0]) : Character{first.point, first.bytes};
}

template <Encoding kEncoding>
Character firstCharacter(base::ByteSpan bytes, const CodePage* page) {
  if constexpr (kEncoding == Encoding::utf8) return firstOfUtf8(bytes);
  if constexpr (kEncoding == Encoding::windows1252) return {unitOfWindows1252(bytes[0]), 1};
  if constexpr (kEncoding == Encoding::codePage) return page->first(bytes);
  return {utf16UnitAt<kEncoding>(bytes, 0), 2};
}

/// Calls work with the encoding as a constant: work.template operator()<Encoding::utf8>().
template <class Work>
auto withEncoding(Encoding encoding, Work work) {
  switch (encoding) {
    case Encoding::utf16Little:
      return work.template operator()<Encoding::utf16Little>();
    case Encoding::utf16Big:
      return work.template operator()<Encoding::utf16Big>();
    case Encoding::windows1252:
      return work.template operator()<Encoding::windows1252>();
    case Encoding::codePage:
      return work.template operator()<Encoding::codePage>();
    case Encoding::utf8:
      break;
  }
  return work.template operator()<Encoding::utf8>();
}

}  // namespace pluvo::code_pages
