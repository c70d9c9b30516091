#pragma once

#include "base/bytes.h"
#include "formats/appearance.h"

#include <cstdint>
#include <optional>

namespace pluvo::doc {

/// The properties of a character that matter here.
struct CharacterLook {
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool struck = false;
  bool inserted = false;
  bool deleted = false;
  bool hidden = false;
  bool special = false;        ///< a character below 32 stands for something, and is no text
  char16_t symbol = 0;         ///< stands in its place where it is special
  std::uint8_t highlight = 0;  ///< Word's colour index
  bool isData = false;         ///< the picture's character holds a form's data
  std::optional<std::uint32_t> picture = std::nullopt;  ///< where in the Data stream it lies
};

/// The properties of a paragraph that matter here, and of the row that it ends.
struct ParagraphLook {
  std::uint16_t style = 0;
  bool inTable = false;
  bool rowEnd = false;
  bool innerCell = false;
  bool innerRow = false;
  std::int32_t depth = 0;  ///< of tables, where it is told
  std::uint8_t outlineLevel = kNoOutline;
  std::uint8_t listLevel = 0;  ///< from 0
  std::uint16_t list = 0;      ///< 0 for none
  bool rightToLeft = false;
  formats::Appearance::Alignment alignment = formats::Appearance::Alignment::start;
  base::ByteSpan rowDefinition;

  static constexpr std::uint8_t kNoOutline = 9;
};

/// Has a paragraph's properties say what they say. Properties too long for a page lie in the Data stream.
void apply(base::ByteSpan properties, base::ByteSpan data, ParagraphLook& look);

class Styles;

/// The same of characters that stand in a paragraph of a style.
void apply(base::ByteSpan properties, const Styles& styles, std::uint16_t paragraphStyle,
           CharacterLook& look);
/// Of a style itself. Its toggles are relative to the style it is based on.
void apply(base::ByteSpan properties, CharacterLook& look);

}  // namespace pluvo::doc
