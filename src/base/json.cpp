#include "base/json.h"

#include "base/shown.h"
#include "base/utf.h"

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
    const Utf8Character next = firstOfUtf8(bytes.substr(at));
    if (next.bytes == 0) {
      json += escaped(standInOf(static_cast<std::uint8_t>(bytes[at])));
    } else if (isControl(next.point)) {
      json += escaped(next.point);
    } else {
      if (next.point == '"' || next.point == '\\') json += '\\';
      json += bytes.substr(at, next.bytes);
    }
    at += std::max<std::size_t>(next.bytes, 1);
  }
  return json + '"';
}

JsonObject& JsonObject::json(std::string_view name, std::string_view value) {
  if (!members_.empty()) members_ += ',';
  members_.append("\"").append(name).append("\":").append(value);
  return *this;
}

void JsonArray::add(std::string_view value) {
  if (!values_.empty()) values_ += ',';
  values_ += value;
}

}  // namespace pluvo::base
