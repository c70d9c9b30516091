#include "state.h"

namespace pluvo::rtf {

namespace {

bool isOn(const Token& token) { return !token.hasNumber || token.number != 0; }

std::uint16_t small(const Token& token, std::int32_t most) {
  return static_cast<std::uint16_t>(std::clamp(token.number, 0, most));
}

}  // namespace

void State::take(const Token& token, Tables& tables) {
  switch (token.word) {
    case Word::f:
      decoder = tables.fonts.decoderOf(token.number);
      break;
    case Word::plain:
      decoder = tables.standardDecoder();
      highlight = 0;
      hidden = bold = italic = underlined = struck = complexScript = false;
      break;
    case Word::v:
      hidden = isOn(token);
      break;
    case Word::deleted:
      deleted = isOn(token);
      break;
    case Word::revised:
      inserted = isOn(token);
      break;
    case Word::highlight:
      highlight = tables.colours.indexAt(token.number);
      break;
    case Word::b:
      if (!complexScript) bold = isOn(token);
      break;
    case Word::i:
      if (!complexScript) italic = isOn(token);
      break;
    case Word::strike:
      struck = isOn(token);
      break;
    case Word::ul:
      underlined = isOn(token);
      break;
    case Word::ulnone:
      underlined = false;
      break;
    case Word::rtlch:
      complexScript = true;
      break;
    case Word::ltrch:
      complexScript = false;
      break;
    case Word::uc:
      fallback = small(token, kDeepest);
      break;
    default:
      takeOfParagraph(token);
  }
}

void State::takeOfParagraph(const Token& token) {
  using Alignment = formats::Appearance::Alignment;
  switch (token.word) {
    case Word::pard:
      inTable = rightToLeft = false;
      depth = 0;
      alignment = Alignment::start;
      outlineLevel = kNoOutline;
      list = 0;
      listLevel = 0;
      style = 0;
      break;
    case Word::intbl:
      inTable = isOn(token);
      break;
    case Word::itap:
      depth = small(token, kDeepest);
      break;
    case Word::ql:
    case Word::qj:
      alignment = Alignment::start;
      break;
    case Word::qc:
      alignment = Alignment::centre;
      break;
    case Word::qr:
      alignment = Alignment::end;
      break;
    case Word::rtlpar:
      rightToLeft = true;
      break;
    case Word::ltrpar:
      rightToLeft = false;
      break;
    case Word::outlinelevel:
      outlineLevel = static_cast<std::uint8_t>(small(token, kNoOutline));
      break;
    case Word::s:
      style = token.number;
      break;
    case Word::ls:
      list = small(token, 0xFFFF);
      break;
    case Word::ilvl:
      listLevel = static_cast<std::uint8_t>(small(token, 8));
      break;
    default:
      break;
  }
}

}  // namespace pluvo::rtf
