#include "characters.h"

#include "base/utf.h"
#include "text/clean_utf8.h"
#include "xml/escape.h"

#include <algorithm>
#include <cstdint>

namespace pluvo::xml {

namespace {

struct Range {
  char32_t first, last;
};

/// NameStartChar and what NameChar adds, XML 1.0, fifth edition, beyond ASCII and in order.
constexpr Range kNameStarts[] = {{0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                 {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                 {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kNameParts[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t Size>
bool within(char32_t c, const Range (&ranges)[Size]) {
  return std::any_of(ranges, ranges + Size,
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

bool startsName(char32_t c) {
  if (c < 0x80) return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z') || c == U'_';
  return within(c, kNameStarts);
}

bool continuesName(char32_t c) {
  if (c < 0x80) return c != U':' && is(static_cast<char>(c), kNamePart);
  return startsName(c) || within(c, kNameParts);
}

}  // namespace

bool isCharacter(char32_t c) {
  if (c < 0x20) return c == U'\t' || c == U'\n' || c == U'\r';
  return c <= 0xD7FF || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

bool isNcName(std::string_view name) {
  if (name.empty()) return false;
  for (std::size_t i = 0; i < name.size();) {
    const base::Utf8Character next = base::firstOfUtf8(name.substr(i));
    if (next.bytes == 0 || !(i == 0 ? startsName(next.point) : continuesName(next.point))) return false;
    i += next.bytes;
  }
  return true;
}

std::optional<std::size_t> findBadCharacter(std::string_view bytes) {
  std::size_t i = text::cleanUtf8({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  while (i < bytes.size()) {
    const base::Utf8Character next = base::firstOfUtf8(bytes.substr(i));
    if (next.bytes == 0 || !isCharacter(next.point)) return i;
    i += next.bytes;
  }
  return std::nullopt;
}

std::size_t readReference(std::string_view bytes, char32_t& codePoint) {
  struct Entity {
    std::string_view text;
    char32_t c;
  };
  static constexpr Entity kEntities[] = {
      {"&amp;", U'&'}, {"&lt;", U'<'}, {"&gt;", U'>'}, {"&quot;", U'"'}, {"&apos;", U'\''}};
  for (const Entity& entity : kEntities) {
    if (bytes.starts_with(entity.text)) {
      codePoint = entity.c;
      return entity.text.size();
    }
  }
  if (!bytes.starts_with("&#")) return 0;
  const bool hexadecimal = bytes.size() > 2 && bytes[2] == 'x';
  const std::size_t first = hexadecimal ? 3 : 2;
  char32_t number = 0;
  for (std::size_t i = first; i < bytes.size(); ++i) {
    const char c = bytes[i];
    unsigned digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<unsigned>(c - '0');
    } else if (hexadecimal && ((c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'))) {
      digit = static_cast<unsigned>((c | 0x20) - 'a') + 10;
    } else {
      codePoint = number;
      return c == ';' && i > first && isCharacter(number) ? i + 1 : 0;
    }
    number = number * (hexadecimal ? 16 : 10) + digit;
    if (number > 0x10FFFF) return 0;
  }
  return 0;
}

}  // namespace pluvo::xml
