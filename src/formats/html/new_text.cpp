#include "new_text.h"

#include "base/ascii.h"
#include "style.h"
#include "tokens.h"

namespace pluvo::formats::html {

namespace {

using base::equalsIgnoringAsciiCase;

bool isHighlight(std::string_view name) {
  return equalsIgnoringAsciiCase(name, "mso-highlight") || equalsIgnoringAsciiCase(name, "background") ||
         equalsIgnoringAsciiCase(name, "background-color");
}

}  // namespace

void appendCharacter(std::string& bytes, char32_t point, const Charset& charset, bool isInComment) {
  constexpr char32_t kNoBreakSpace = 0xA0;
  switch (point) {
    case U'&':
      bytes += "&amp;";
      return;
    case U'<':
      bytes += "&lt;";
      return;
    case U'>':
      bytes += "&gt;";
      return;
    case kNoBreakSpace:
      bytes += "&nbsp;";
      return;
    default:
      break;
  }
  const bool isPlain = point >= 0x20 && point != 0x7F && (point != U'-' || !isInComment);
  if (isPlain && appendEncoded(bytes, point, charset)) return;
  bytes += "&#" + std::to_string(static_cast<std::uint32_t>(point)) + ";";
}

std::string copyOf(std::string_view tag) {
  std::string copy;
  std::size_t copied = 0;
  forEachAttribute(tag, [&](std::string_view name, std::string_view, const Extent& extent) {
    if (!equalsIgnoringAsciiCase(name, "id") && !equalsIgnoringAsciiCase(name, "name")) return;
    copy += tag.substr(copied, extent.begin - copied);
    copied = extent.end;
  });
  copy += tag.substr(copied);
  return copy;
}

std::string withoutHighlight(std::string_view tag, std::string_view name, bool isByRule) {
  std::string style;
  Extent styleAt;
  std::size_t others = 0;
  char quote = '"';
  forEachAttribute(tag, [&](std::string_view attribute, std::string_view value, const Extent& extent) {
    if (!equalsIgnoringAsciiCase(attribute, "style")) {
      ++others;
      return;
    }
    if (!styleAt.empty()) return;
    styleAt = extent;
    if (tag[extent.end - 1] == '\'') quote = '\'';
    forEachDeclaration(value, [&](std::string_view whole, std::string_view property, std::string_view) {
      if (isHighlight(property)) return;
      style += (style.empty() ? "" : ";") + std::string(withoutBlanks(whole));
    });
  });
  if (isByRule) style += std::string(style.empty() ? "" : ";") + "background:none;mso-highlight:none";
  if (style.empty() && others == 0 && equalsIgnoringAsciiCase(name, "span")) return {};
  std::string attribute;
  if (!style.empty()) attribute = std::string(" style=") + quote + style + quote;
  if (styleAt.empty()) {
    const std::size_t at = 1 + name.size();
    return std::string(tag.substr(0, at)) + attribute + std::string(tag.substr(at));
  }
  return std::string(tag.substr(0, styleAt.begin)) + attribute + std::string(tag.substr(styleAt.end));
}

std::string markLook(std::uint8_t colour, bool isHidden, bool isDeleted) {
  std::string style = isHidden ? "display:none;mso-hide:all" : "";
  const std::string name(colour == 0 ? "" : nameOfColour(colour));
  if (colour != 0) style += (style.empty() ? "" : ";") + ("background:" + name) + ";mso-highlight:" + name;
  std::string look = "<o:p></o:p>";
  if (!style.empty()) look = "<span style=\"" + style + "\">" + look + "</span>";
  return isDeleted ? "<del>" + look + "</del>" : look;
}

std::string highlightTag(std::uint8_t colour, std::string_view more) {
  const std::string name(nameOfColour(colour));
  return "<span style=\"background:" + name + ";mso-highlight:" + name + std::string(more) + "\">";
}

}  // namespace pluvo::formats::html
