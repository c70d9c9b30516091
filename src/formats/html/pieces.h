#pragma once

#include "text/positions.h"
#include "tokens.h"
#include "walker.h"

#include <cstdint>
#include <string_view>

namespace pluvo::formats::html {

/// A piece of a paragraph that is written anew: old text, new text, and the bytes between.
struct Piece {
  enum class Kind : std::uint8_t {
    text,       ///< characters of one byte each that stay
    character,  ///< one that stays
    put,        ///< new text, of one colour
    mark,       ///< the end of a paragraph, for which the file has no bytes
    gap,
    filler,
    tag,
    aside,
    gone,  ///< characters were here
  };
  Kind kind = Kind::gone;
  bool isOld = true;  ///< its bytes lie where it is written; otherwise it comes from an earlier paragraph
  bool keepsBlanks = false;  ///< how its bytes were read
  bool isNearEdit = false;   ///< after it stands another text than before
  bool isHidden = false;     ///< of new text, or the end of a paragraph
  bool isDeleted = false;    ///< the same: in a tracked deletion
  std::uint8_t colour = 0;   ///< that it is to have
  std::uint8_t colourWas = 0;
  std::uint8_t partFrom = 0;  ///< of a character of which only some units stay …
  std::uint8_t partCount = 0;
  std::int32_t inlines = -1;  ///< the innermost element it is to lie in …
  std::int32_t here = -1;     ///< … and the one that is open at its bytes
  Extent bytes;
  Character character;
  std::u16string_view units;

  bool holdsText() const { return kind == Kind::text || kind == Kind::character || kind == Kind::put; }
};

}  // namespace pluvo::formats::html
