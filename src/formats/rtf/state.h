#pragma once

#include "formats/appearance.h"
#include "tables.h"

#include <algorithm>
#include <cstdint>

namespace pluvo::rtf {

/// The properties of the text at a place. An opening brace keeps it, the closing one brings it back.
struct State {
  std::uint16_t decoder = 0;
  std::uint16_t fallback = 1;  ///< characters after \uN that stand for it
  // Of characters:
  std::uint8_t highlight = 0;  ///< Word's colour index
  bool hidden = false;
  bool deleted = false;
  bool inserted = false;
  bool bold = false;
  bool italic = false;
  bool underlined = false;
  bool struck = false;
  bool inCode = false;         ///< of a field, which no font makes symbols of
  bool complexScript = false;  ///< the words for bold and italic are of another script's letters
  // Of paragraphs:
  bool inTable = false;
  bool rightToLeft = false;
  formats::Appearance::Alignment alignment = {};
  std::uint8_t outlineLevel = kNoOutline;
  std::uint8_t listLevel = 0;
  std::uint16_t list = 0;
  std::uint16_t depth = 0;  ///< of tables, as the file says it
  std::int32_t style = 0;

  static constexpr std::uint8_t kNoOutline = 9;
  static constexpr std::uint16_t kDeepest = 1000;

  /// How many tables a paragraph that ended here would lie in.
  std::uint16_t tableDepth() const { return std::max<std::uint16_t>(depth, inTable ? 1 : 0); }

  /// A word of looks, if it is one.
  void take(const Token& token, Tables& tables);

 private:
  void takeOfParagraph(const Token& token);
};

}  // namespace pluvo::rtf
