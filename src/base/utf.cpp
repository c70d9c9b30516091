#include "base/utf.h"

#include "base/names.h"

namespace pluvo::base {

namespace {

/// Stand for single bytes 0x80 to 0xFF that are no part of a UTF-8 character.
constexpr char32_t kByteEscapes = 0xDC00;

bool isByteEscape(char32_t unit) { return unit >= kByteEscapes + 0x80 && unit <= kByteEscapes + 0xFF; }

/// Appends what stands for a lone surrogate.
using OnSurrogate = void (*)(std::string& out, char32_t unit);

std::string encoded(std::u16string_view text, OnSurrogate onSurrogate) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Utf16Character next = firstOfUtf16(text);
    if (isSurrogate(next.point)) {
      onSurrogate(out, next.point);
    } else {
      appendUtf8(out, next.point);
    }
    text.remove_prefix(next.units);
  }
  return out;
}

/// What stands for a byte that is no UTF-8.
using OnByte = char32_t (*)(char byte);

std::u16string decoded(std::string_view text, OnByte onByte) {
  std::u16string out;
  out.reserve(text.size());
  while (!text.empty()) {
    Utf8Character next = firstOfUtf8(text);
    if (next.bytes == 0) next = {onByte(text[0]), 1};
    appendUtf16(out, next.point);
    text.remove_prefix(next.bytes);
  }
  return out;
}

}  // namespace

std::string utf8(std::u16string_view text) {
  return encoded(text, [](std::string& out, char32_t) { appendUtf8(out, kReplacement); });
}

std::u16string utf16(std::string_view text) {
  return decoded(text, [](char) { return kReplacement; });
}

std::string nameBytes(std::u16string_view name) {
  return encoded(name, [](std::string& out, char32_t unit) {
    if (isByteEscape(unit)) {
      out += static_cast<char>(unit & 0xFF);
    } else {
      appendUtf8(out, unit);
    }
  });
}

std::u16string nameText(std::string_view bytes) {
  return decoded(bytes,
                 [](char byte) -> char32_t { return kByteEscapes + static_cast<unsigned char>(byte); });
}

}  // namespace pluvo::base
