#include "xml/escape.h"

#include "characters.h"

#include <algorithm>
#include <iterator>

namespace pluvo::xml {

namespace {

constexpr bool isHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

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
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (const std::string_view reference = escaped(unit, inAttribute); !reference.empty()) {
      out += reference;
    } else if (isHigh(unit) && i + 1 < text.size() && isLow(text[i + 1])) {
      appendUtf8(out, 0x10000 + ((char32_t{unit} - 0xD800) << 10U) + (text[++i] - 0xDC00U));
    } else {
      appendUtf8(out, unit);
    }
  }
}

}  // namespace

void appendEscapedText(std::string& out, std::u16string_view text) { append(out, text, false); }

void appendEscapedAttribute(std::string& out, std::u16string_view text) { append(out, text, true); }

}  // namespace pluvo::xml
