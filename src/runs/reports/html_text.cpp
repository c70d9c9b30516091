#include "reports/html_text.h"

#include "base/utf.h"

namespace pluvo::runs {

std::string escaped(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  std::size_t sound = base::wellFormedLength(bytes);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i >= sound) {
      const std::size_t more = base::wellFormedLength(bytes.substr(i));
      if (more == 0) {
        out += "\xEF\xBF\xBD";
        continue;
      }
      sound = i + more;
    }
    switch (bytes[i]) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += static_cast<unsigned char>(bytes[i]) < 0x20 ? ' ' : bytes[i];
    }
  }
  return out;
}

}  // namespace pluvo::runs
