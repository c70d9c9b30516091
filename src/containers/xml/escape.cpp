#include "xml/escape.h"

#include "base/utf.h"

#include <algorithm>
#include <cstddef>

namespace pluvo::xml {

namespace {

std::string_view escaped(char16_t unit) {
  switch (unit) {
    case u'&':
      return "&amp;";
    case u'<':
      return "&lt;";
    case u'>':
      return "&gt;";
    case u'\r':
      return "&#13;";
    default:
      return "";
  }
}

bool standsForItself(char16_t unit) {
  return unit >= u' ' && unit < 0x7F && unit != u'&' && unit != u'<' && unit != u'>';
}

}  // namespace

void appendEscapedText(std::string& out, std::u16string_view text) {
  if (std::all_of(text.begin(), text.end(), standsForItself)) {
    out.resize(out.size() + text.size());
    std::transform(text.begin(), text.end(), out.end() - static_cast<std::ptrdiff_t>(text.size()),
                   [](char16_t unit) { return static_cast<char>(unit); });
    return;
  }
  while (!text.empty()) {
    const base::Utf16Character next = base::firstOfUtf16(text);
    if (const std::string_view reference = escaped(text[0]); !reference.empty()) {
      out += reference;
    } else {
      base::appendUtf8(out, next.point);
    }
    text.remove_prefix(next.units);
  }
}

}  // namespace pluvo::xml
