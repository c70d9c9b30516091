#include "base/shown.h"

#include "base/utf.h"

#include <algorithm>

namespace pluvo::base {

bool isControl(char32_t code) {
  if (code < 0x20 || (code >= 0x7F && code <= 0x9F)) return true;
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x206F);
}

std::string shown(std::string_view bytes) {
  // Most text is plain ASCII, and is shown as it is.
  const auto plain = [](char c) { return c >= 0x20 && c < 0x7F; };
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const auto* const from = bytes.begin() + at;
    const auto* const to = std::find_if_not(from, bytes.end(), plain);
    text.append(from, to);
    at += static_cast<std::size_t>(to - from);
    if (at == bytes.size()) break;
    const Utf8Character next = firstOfUtf8(bytes.substr(at));
    if (next.bytes == 0) {
      text += "\uFFFD";
    } else if (isControl(next.point)) {
      text += '?';
    } else {
      text += bytes.substr(at, next.bytes);
    }
    at += std::max<std::size_t>(next.bytes, 1);
  }
  return text;
}

std::string counted(std::int64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace pluvo::base
