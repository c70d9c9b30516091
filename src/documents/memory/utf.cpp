#include "memory/utf.h"

namespace pluvo::memory {

namespace {

/// The length of the sequence a byte leads, 0 for a byte that leads none.
std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

/// The character at the front of the text, and how many bytes it takes; U+FFFD for a byte that is no UTF-8.
std::pair<char32_t, std::size_t> decode(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = sequenceLength(lead);
  if (length == 1) return {lead, 1};
  if (length == 0 || length > text.size()) return {U'\uFFFD', 1};
  char32_t character = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0U) != 0x80) return {U'\uFFFD', 1};
    character = character << 6U | (byte & 0x3FU);
  }
  return {character, length};
}

void encode(char32_t character, std::string& out) {
  if (character < 0x80) {
    out += static_cast<char>(character);
    return;
  }
  const std::size_t length = character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  out += static_cast<char>((0xF00U >> length & 0xFFU) | character >> (6 * (length - 1)));
  for (std::size_t i = length - 1; i-- > 0;) out += static_cast<char>(0x80U | (character >> (6 * i) & 0x3FU));
}

}  // namespace

std::u16string toUtf16(std::string_view utf8) {
  std::u16string result;
  while (!utf8.empty()) {
    const auto [character, length] = decode(utf8);
    utf8.remove_prefix(length);
    if (character < 0x10000) {
      result += static_cast<char16_t>(character);
    } else {
      result += static_cast<char16_t>(0xD7C0 + (character >> 10U));
      result += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
    }
  }
  return result;
}

std::string toUtf8(std::u16string_view utf16) {
  std::string result;
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    char32_t character = utf16[i];
    const bool leads = character >= 0xD800 && character < 0xDC00;
    const bool paired = leads && i + 1 < utf16.size() && (utf16[i + 1] & 0xFC00U) == 0xDC00U;
    if (paired) {
      character = 0x10000 + ((character & 0x3FFU) << 10U) + (utf16[++i] & 0x3FFU);
    } else if (character >= 0xD800 && character < 0xE000) {
      character = U'\uFFFD';
    }
    encode(character, result);
  }
  return result;
}

}  // namespace pluvo::memory
