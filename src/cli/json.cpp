#include "json.h"

#include "unicode.h"

#include <array>
#include <cstdio>

namespace pluvo::cli {
namespace {

std::string escaped(unsigned unit) {
  std::array<char, 8> buffer{};
  (void)std::snprintf(buffer.data(), buffer.size(), "\\u%04x", unit);
  return buffer.data();
}

}  // namespace

std::string jsonQuoted(std::string_view bytes) {
  std::string json = "\"";
  std::size_t sound = wellFormedLength(bytes);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto c = static_cast<unsigned char>(bytes[i]);
    if (i >= sound) {
      const std::size_t more = wellFormedLength(bytes.substr(i));
      if (more == 0) {
        json += escaped(0xDC00U + c);
        continue;
      }
      sound = i + more;
    }
    if (c == '"' || c == '\\') {
      json += '\\';
      json += static_cast<char>(c);
    } else if (c < 0x20 || c == 0x7F) {
      json += escaped(c);
    } else {
      json += static_cast<char>(c);
    }
  }
  return json + '"';
}

}  // namespace pluvo::cli
