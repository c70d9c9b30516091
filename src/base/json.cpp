#include "base/json.h"

#include "base/shown.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace pluvo::base {
namespace {

std::string escaped(unsigned unit) {
  std::array<char, 8> buffer{};
  (void)std::snprintf(buffer.data(), buffer.size(), "\\u%04x", unit);
  return buffer.data();
}

}  // namespace

std::string jsonQuoted(std::string_view bytes) {
  std::string json = "\"";
  for (std::size_t at = 0; at < bytes.size();) {
    const Character next = firstCharacter(bytes.substr(at));
    if (next.length == 0) {
      json += escaped(0xDC00U + static_cast<unsigned char>(bytes[at]));
    } else if (isControl(next.code)) {
      json += escaped(next.code);
    } else {
      if (next.code == '"' || next.code == '\\') json += '\\';
      json += bytes.substr(at, next.length);
    }
    at += std::max<std::size_t>(next.length, 1);
  }
  return json + '"';
}

}  // namespace pluvo::base
