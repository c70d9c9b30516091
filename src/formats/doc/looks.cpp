#include "looks.h"

#include "properties.h"
#include "styles.h"

#include <optional>

namespace pluvo::doc {

namespace {

using Alignment = formats::Appearance::Alignment;

constexpr std::uint8_t kAsStyle = 0x80;
constexpr std::uint8_t kNotAsStyle = 0x81;

void turn(bool& value, std::uint8_t operand, bool ofStyle) {
  if (operand <= 1) value = operand == 1;
  if (operand == kAsStyle) value = ofStyle;
  if (operand == kNotAsStyle) value = !ofStyle;
}

Alignment alignmentOf(std::uint8_t number) {
  if (number == 1) return Alignment::centre;
  return number == 2 ? Alignment::end : Alignment::start;
}

/// Whether the property is one that a style may turn round.
bool applyToggle(std::uint16_t property, std::uint8_t operand, const CharacterLook& ofStyle,
                 CharacterLook& look) {
  switch (property) {
    case code::kBold:
      turn(look.bold, operand, ofStyle.bold);
      return true;
    case code::kItalic:
      turn(look.italic, operand, ofStyle.italic);
      return true;
    case code::kStruck:
    case code::kDoublyStruck:
      turn(look.struck, operand, ofStyle.struck);
      return true;
    case code::kHidden:
      turn(look.hidden, operand, ofStyle.hidden);
      return true;
    default:
      return false;
  }
}

void applyOne(std::uint16_t property, base::ByteSpan operand, const CharacterLook& ofStyle,
              CharacterLook& look) {
  if (applyToggle(property, operand[0], ofStyle, look)) return;
  switch (property) {
    case code::kDeleted:
      look.deleted = operand[0] != 0;
      break;
    case code::kInserted:
      look.inserted = operand[0] != 0;
      break;
    case code::kUnderline:
      look.underlined = operand[0] != 0;
      break;
    case code::kHighlight:
      look.highlight = operand[0] <= 16 ? operand[0] : 0;
      break;
    case code::kSpecial:
      look.special = operand[0] != 0;
      break;
    case code::kSymbol:
      look.special = true;
      look.symbol = static_cast<char16_t>(base::get16(operand, 2));
      break;
    case code::kData:
      look.isData = operand[0] != 0;
      break;
    case code::kPicture:
      look.special = true;
      look.picture = base::get32(operand, 0);
      break;
    default:
      break;
  }
}

/// Takes the looks of a style, not the kind of character.
void takeLookOf(const CharacterLook& style, CharacterLook& look) {
  look.bold = style.bold;
  look.italic = style.italic;
  look.underlined = style.underlined;
  look.struck = style.struck;
  look.hidden = style.hidden;
  look.highlight = style.highlight;
}

void applyHuge(base::ByteSpan operand, base::ByteSpan data, ParagraphLook& look) {
  const std::size_t at = base::get32(operand, 0);
  if (at > data.size() || data.size() - at < 2) return;
  const std::size_t size = base::get16(data, at);
  // Properties there lead nowhere else.
  if (size <= data.size() - at - 2) apply(data.subspan(at + 2, size), {}, look);
}

}  // namespace

void apply(base::ByteSpan properties, base::ByteSpan data, ParagraphLook& look) {
  forEachProperty(properties, [&](std::uint16_t property, base::ByteSpan operand) {
    switch (property) {
      case code::kHuge:
      case code::kOldHuge:
        return applyHuge(operand, data, look);
      case code::kInTable:
        look.inTable = operand[0] != 0;
        return;
      case code::kRowEnd:
        look.rowEnd = operand[0] != 0;
        return;
      case code::kInnerCell:
        look.innerCell = operand[0] != 0;
        return;
      case code::kInnerRow:
        look.innerRow = operand[0] != 0;
        return;
      case code::kDepth:
        look.depth = static_cast<std::int32_t>(base::get32(operand, 0));
        return;
      case code::kDepthBy:
        look.depth =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(look.depth) + base::get32(operand, 0));
        return;
      case code::kRowDefinition:
        look.rowDefinition = operand;
        return;
      case code::kOutlineLevel:
        look.outlineLevel = operand[0];
        return;
      case code::kListLevel:
        look.listLevel = operand[0];
        return;
      case code::kList:
        look.list = base::get16(operand, 0);
        return;
      case code::kRightToLeft:
        look.rightToLeft = operand[0] != 0;
        return;
      case code::kAlignment:
      case code::kAlignment80:
        look.alignment = alignmentOf(operand[0]);
        return;
      default:
        return;
    }
  });
}

void apply(base::ByteSpan properties, const Styles& styles, std::uint16_t paragraphStyle,
           CharacterLook& look) {
  const CharacterLook ofParagraph = styles.characterLook(paragraphStyle);
  CharacterLook ofStyle = ofParagraph;
  forEachProperty(properties, [&](std::uint16_t property, base::ByteSpan operand) {
    if (operand.empty()) return;
    if (property == code::kCharacterStyle) {
      ofStyle = styles.withCharacterStyle(ofParagraph, base::get16(operand, 0));
      takeLookOf(ofStyle, look);
    } else if (property == code::kPlain) {
      takeLookOf(ofStyle, look);
    } else {
      applyOne(property, operand, ofStyle, look);
    }
  });
}

void apply(base::ByteSpan properties, CharacterLook& look) {
  const CharacterLook base = look;
  forEachProperty(properties, [&](std::uint16_t property, base::ByteSpan operand) {
    if (!operand.empty()) applyOne(property, operand, base, look);
  });
}

}  // namespace pluvo::doc
