#include "base/utf.h"

#include "base/names.h"

#include <algorithm>

namespace pluvo::base {

namespace {

bool standsForByte(char32_t unit) { return unit >= standInOf(0x80) && unit <= standInOf(0xFF); }

/// Appends the replacement for a lone surrogate.
using OnSurrogate = void (*)(std::string& out, char32_t unit);

std::string encoded(std::u16string_view text, OnSurrogate onSurrogate) {
  std::string out;
  out.reserve(text.size());
  while (true) {
    // Most texts are ASCII from end to end.
    const auto ascii = std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; });
    out.append(text.begin(), ascii);
    text.remove_prefix(static_cast<std::size_t>(ascii - text.begin()));
    if (text.empty()) return out;
    const Utf16Character next = firstOfUtf16(text);
    if (isSurrogate(next.point)) {
      onSurrogate(out, next.point);
    } else {
      appendUtf8(out, next.point);
    }
    text.remove_prefix(next.units);
  }
}

/// The unit that stands for a byte that is no UTF-8.
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

std::size_t wellFormedLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    const std::size_t next = firstOfUtf8(bytes.substr(length)).bytes;
    if (next == 0) break;
    length += next;
  }
  return length;
}

std::string utf8(std::u16string_view text) {
  return encoded(text, [](std::string& out, char32_t) { appendUtf8(out, kReplacement); });
}

std::u16string utf16(std::string_view text) {
  return decoded(text, [](char) { return kReplacement; });
}

std::string nameBytes(std::u16string_view name) {
  return encoded(name, [](std::string& out, char32_t unit) {
    if (standsForByte(unit)) {
      out += static_cast<char>(unit & 0xFF);
    } else {
      appendUtf8(out, unit);
    }
  });
}

std::u16string nameText(std::string_view bytes) {
  return decoded(bytes, [](char byte) { return standInOf(static_cast<std::uint8_t>(byte)); });
}

}  // namespace pluvo::base
