#include "rtf_source.h"

#include "appearance_reader.h"
#include "formats/refused_character.h"
#include "other_texts.h"
#include "writer.h"

namespace pluvo::rtf {

std::optional<std::string> RtfSource::refusesText(std::u16string_view newText) const {
  return formats::firstRefused(newText, "An RTF document", formats::hasPlaceInWordText);
}

void RtfSource::write(const document::Document& document, base::Output& out) const {
  writeDocument(text(), old_.tables, old_.places, document, out);
}

void RtfSource::tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const {
  rtf::tellOtherTexts(text(), old_, mainText, texts);
}

std::vector<text::RunMap<formats::Appearance>> RtfSource::appearance() const {
  return {readAppearance(text(), old_.places.front().map)};
}

}  // namespace pluvo::rtf
