#pragma once

#include "colours.h"
#include "fonts.h"
#include "tokens.h"

#include <cstddef>

namespace pluvo::rtf {

/// The tables of a document: fonts, colours, styles.
struct Tables {
  Fonts fonts;
  Colours colours;
  /// Where an entry of the table of colours may be put in: at the end of the last one, else where one may
  /// begin.
  std::size_t coloursAt = 0;
  bool hasColours = false;

  std::uint16_t standardDecoder() { return fonts.decoderOf(fonts.standard()); }

  /// A word before the first text, in how many groups. True where it may have changed the standard decoder.
  bool header(const Token& token, std::size_t depth);
  /// A group whose content lies there. True where it may have changed the standard decoder.
  bool group(Word word, std::string_view bytes, Extent content, bool isBeforeText);
};

}  // namespace pluvo::rtf
