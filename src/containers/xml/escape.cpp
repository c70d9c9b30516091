#include "xml/escape.h"

#include "base/utf.h"

#include <algorithm>
#include <iterator>

namespace pluvo::xml {

namespace {

std::string_view escaped(char16_t unit, bool inAttribute) {
  switch (unit) {
    case u'&':
      return "&amp;";
    case u'<':
      return "&lt;";
    case u'>':
      return "&gt;";
    case u'\r':
      return "&#13;";
    case u'"':
      return inAttribute ? "&quot;" : "";
    case u'\t':
      return inAttribute ? "&#9;" : "";
    case u'\n':
      return inAttribute ? "&#10;" : "";
    default:
      return "";
  }
}

bool standsForItself(char16_t unit) {
  return unit >= u' ' && unit < 0x7F && unit != u'&' && unit != u'<' && unit != u'>' && unit != u'"';
}

void append(std::string& out, std::u16string_view text, bool inAttribute) {
  if (std::all_of(text.begin(), text.end(), standsForItself)) {
    std::transform(text.begin(), text.end(), std::back_inserter(out),
                   [](char16_t unit) { return static_cast<char>(unit); });
    return;
  }
  while (!text.empty()) {
    const base::Utf16Character next = base::firstOfUtf16(text);
    if (const std::string_view reference = escaped(text[0], inAttribute); !reference.empty()) {
      out += reference;
    } else {
      base::appendUtf8(out, next.point);
    }
    text.remove_prefix(next.units);
  }
}

}  // namespace

void appendEscapedText(std::string& out, std::u16string_view text) { append(out, text, false); }

void appendEscapedAttribute(std::string& out, std::u16string_view text) { append(out, text, true); }

}  // namespace pluvo::xml
