#include "run_content.h"

#include "base/utf.h"
#include "errors/document_error.h"
#include "text/positions.h"
#include "xml/escape.h"

#include <algorithm>

namespace pluvo::docx {

namespace {

void requireWholeCharacters(std::u16string_view units) {
  for (; !units.empty(); units.remove_prefix(base::firstOfUtf16(units).units)) {
    if (base::isSurrogate(base::firstOfUtf16(units).point)) {
      throw errors::DocumentError(
          errors::Problem::encoding,
          "An operation cut a character in two (one that UTF-16 writes as a pair), which the "
          "document cannot hold; choose texts of whole characters.");
    }
  }
}

}  // namespace

bool standsAlone(char16_t unit) {
  switch (unit) {
    case text::kTab:
    case text::kLineBreak:
    case text::kPageBreak:
    case text::kParagraphMark:
    case text::kColumnBreak:
    case text::kNonBreakingHyphen:
    case text::kOptionalHyphen:
      return true;
    default:
      return false;
  }
}

std::string elementOf(char16_t unit, const Markup& markup) {
  switch (unit) {
    case text::kTab:
      return markup.tag("tab") + "/>";
    case text::kPageBreak:
      return markup.with("br", "type", "page");
    case text::kColumnBreak:
      return markup.with("br", "type", "column");
    case text::kNonBreakingHyphen:
      return markup.tag("noBreakHyphen") + "/>";
    case text::kOptionalHyphen:
      return markup.tag("softHyphen") + "/>";
    default:
      return markup.tag("br") + "/>";
  }
}

void appendText(std::string& out, std::u16string_view units) {
  requireWholeCharacters(units);
  xml::appendEscapedText(out, units);
}

void appendBlankElement(std::string& out, std::string_view tag, std::string_view blanks) {
  if (!blanks.empty())
    out.append("<").append(tag).append(">").append(blanks).append("</").append(tag).append(">");
}

void appendTextElement(std::string& out, std::string_view tag, std::string_view text,
                       std::string_view leading, std::string_view trailing) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  const bool hasBlankEdge = isBlank(text.front()) || isBlank(text.back());
  if (hasBlankEdge) appendBlankElement(out, tag, leading);
  out.append("<").append(tag).append(hasBlankEdge ? " xml:space=\"preserve\">" : ">");
  if (!hasBlankEdge) out.append(leading);
  out.append(text);
  if (!hasBlankEdge) out.append(trailing);
  out.append("</").append(tag).append(">");
  if (hasBlankEdge) appendBlankElement(out, tag, trailing);
}

void appendContent(std::string& out, std::u16string_view units, std::string_view tag, const Markup& markup) {
  while (!units.empty()) {
    const auto* const special = std::find_if(units.begin(), units.end(), standsAlone);
    const auto plain = static_cast<std::size_t>(special - units.begin());
    std::string text;
    appendText(text, units.substr(0, plain));
    if (plain > 0) appendTextElement(out, tag, text);
    if (plain < units.size()) out += elementOf(units[plain], markup);
    units.remove_prefix(std::min(plain + 1, units.size()));
  }
}

std::string fieldMark(std::string_view type, const Markup& markup) {
  return markup.tag("r") + ">" + markup.with("fldChar", "fldCharType", type) + markup.endTag("r");
}

std::string fieldBeginning(std::u16string_view instruction, const Markup& markup) {
  std::string result = fieldMark("begin", markup);
  if (!instruction.empty()) {
    result += markup.tag("r") + ">";
    appendContent(result, instruction, markup.element + "instrText", markup);
    result += markup.endTag("r");
  }
  return result + fieldMark("separate", markup);
}

}  // namespace pluvo::docx
