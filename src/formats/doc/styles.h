#pragma once

#include "looks.h"

#include <cstdint>
#include <vector>

namespace pluvo::doc {

/// The styles of a document, so far as they are of interest here.
class Styles {
 public:
  /// A style that cannot be read is empty.
  static Styles read(base::ByteSpan sheet, base::ByteSpan data);

  /// Of characters in a paragraph of this style.
  const CharacterLook& characterLook(std::uint16_t paragraphStyle) const {
    return at(paragraphStyle).character;
  }
  CharacterLook withCharacterStyle(CharacterLook look, std::uint16_t style) const;
  /// Whether any of them says how characters are highlighted.
  bool haveHighlight() const { return haveHighlight_; }
  const ParagraphLook& paragraphLook(std::uint16_t style) const { return at(style).paragraph; }

 private:
  struct Style {
    std::uint16_t base = kNone;
    std::uint8_t heading = 0;  ///< 1 to 9; 0 for none
    bool isOfParagraphs = false;
    bool isReady = false;
    base::ByteSpan ofParagraph;
    base::ByteSpan ofCharacters;
    CharacterLook character;
    ParagraphLook paragraph;
  };
  static constexpr std::uint16_t kNone = 0x0FFF;

  static Style readStyle(base::ByteSpan bytes, std::size_t baseSize);
  const Style& at(std::uint16_t style) const { return style < styles_.size() ? styles_[style] : nothing_; }
  void makeReady(std::size_t style, base::ByteSpan data, int depth);

  std::vector<Style> styles_;
  bool haveHighlight_ = false;
  Style nothing_;
};

}  // namespace pluvo::doc
