#include "rtf_source.h"

#include "appearance_reader.h"
#include "other_texts.h"
#include "writer.h"

#include <array>
#include <cstdio>

namespace pluvo::rtf {

std::optional<std::string> RtfSource::refusesText(std::u16string_view newText) const {
  for (std::size_t i = 0; i < newText.size(); ++i) {
    const char16_t unit = newText[i];
    const bool isPair = unit >= 0xD800 && unit < 0xDC00 && i + 1 < newText.size() &&
                        newText[i + 1] >= 0xDC00 && newText[i + 1] < 0xE000;
    const bool isHalf = unit >= 0xD800 && unit < 0xE000 && !isPair;
    const bool hasPlace = unit >= 0x20 || (unit >= 9 && unit <= 14) || unit == 30 || unit == 31;
    if (isPair) ++i;
    if (hasPlace && !isHalf) continue;
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned>(unit));
    return std::string("An RTF document cannot hold the character ") + code.data() +
           "; leave it out of the text.";
  }
  return std::nullopt;
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
