#include "new_text.h"

namespace pluvo::rtf {

namespace {

/// The word or symbol of a character that has one.
const char* wordOf(char16_t unit) {
  switch (unit) {
    case 9:
      return "\\tab ";
    case 10:
    case 13:
      return "\\par ";
    case 11:
      return "\\line ";
    case 12:
      return "\\page ";
    case 14:
      return "\\column ";
    case 30:
      return "\\_";
    case 31:
      return "\\-";
    case 0xA0:
      return "\\~";
    default:
      return nullptr;
  }
}

}  // namespace

void appendEncoded(std::string& bytes, std::u16string_view text, std::uint16_t fallback) {
  for (const char16_t unit : text) {
    if (const char* const word = wordOf(unit)) {
      bytes += word;
    } else if (unit >= 0x20 && unit < 0x7F) {
      if (unit == u'\\' || unit == u'{' || unit == u'}') bytes += '\\';
      bytes += static_cast<char>(unit);
    } else {
      bytes += "\\u" + std::to_string(static_cast<std::int16_t>(unit));
      if (fallback == 0) bytes += ' ';
      bytes.append(fallback, '?');
    }
  }
}

}  // namespace pluvo::rtf
