#include "html_source.h"

#include "appearance_reader.h"
#include "base/utf.h"
#include "document_writer.h"
#include "formats/refused_character.h"
#include "other_texts.h"

namespace pluvo::formats::html {

namespace {

/// HTML has no numbers for controls, but for those that are elements or blanks here.
bool hasPlace(char32_t point) {
  if (base::isSurrogate(point) || point == 0xFFFE || point == 0xFFFF) return false;
  if (point < 0x20) return point == 9 || (point >= 11 && point <= 14);
  return point < 0x7F || point > 0x9F;
}

}  // namespace

std::optional<std::string> HtmlSource::refusesText(std::u16string_view newText) const {
  return formats::firstRefused(newText, "A page", hasPlace);
}

void HtmlSource::write(const document::Document& document, base::Output& out) const {
  writeDocument(*page_, old_, document, out);
}

void HtmlSource::tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const {
  html::tellOtherTexts(*page_, old_, mainText, texts);
}

std::vector<text::RunMap<formats::Appearance>> HtmlSource::appearance() const {
  return {readAppearance(*page_, old_.mainText)};
}

}  // namespace pluvo::formats::html
