#include "base/shown.h"

#include <algorithm>
#include <cstdint>

namespace pluvo::base {

Character firstCharacter(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {};
  std::uint32_t code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(bytes[i]);
    if ((next & 0xC0U) != 0x80) return {};
    code = code << 6U | (next & 0x3FU);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (overlong || surrogate || code > 0x10FFFF) return {};
  return {code, length};
}

std::size_t wellFormedLength(std::string_view bytes) {
  std::size_t length = 0;
  while (length < bytes.size()) {
    const std::size_t next = firstCharacter(bytes.substr(length)).length;
    if (next == 0) break;
    length += next;
  }
  return length;
}

bool isControl(char32_t code) {
  if (code < 0x20 || (code >= 0x7F && code <= 0x9F)) return true;
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x206F);
}

std::string shown(std::string_view bytes) {
  // Most of what is shown is plain ASCII, and goes as it is.
  const auto plain = [](char c) { return c >= 0x20 && c < 0x7F; };
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const auto* const from = bytes.begin() + at;
    const auto* const to = std::find_if_not(from, bytes.end(), plain);
    text.append(from, to);
    at += static_cast<std::size_t>(to - from);
    if (at == bytes.size()) break;
    const Character next = firstCharacter(bytes.substr(at));
    if (next.length == 0) {
      text += "\uFFFD";
    } else if (isControl(next.code)) {
      text += '?';
    } else {
      text += bytes.substr(at, next.length);
    }
    at += std::max<std::size_t>(next.length, 1);
  }
  return text;
}

}  // namespace pluvo::base
