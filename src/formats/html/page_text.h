#pragma once

#include "paragraphs.h"
#include "walk_state.h"

#include <cstddef>
#include <cstdint>

namespace pluvo::formats::html {

/// Takes the text between tags apart into characters: blanks fold, references stand for others.
class PageText {
 public:
  PageText(WalkState& walk, Paragraphs& paragraphs) : walk_(walk), paragraphs_(paragraphs) {}

  void take(Extent bytes);
  /// Without references, and never to be changed: a paragraph of its own.
  void takeRaw(Extent bytes);
  /// One unit, or several alike, for which other bytes than text stand.
  void putMark(Character::Kind kind, char16_t unit, Extent bytes, std::uint8_t count = 1);
  /// The tag of a mark that ends a line, a page, a column or a section. Blanks after it are no text.
  void lineBreak(const Token& token, const Style& style);

 private:
  void takeFolded(Extent bytes);
  void takeKept(Extent bytes);
  void reference(std::size_t& at, std::size_t end);
  void point(char32_t point, Extent bytes, bool isOpenEnded);
  void blank(Extent bytes);
  void decoded(std::size_t& at, std::size_t end);
  void lineEnd(std::size_t& at, std::size_t end);
  void put(const Character& character);

  WalkState& walk_;
  Paragraphs& paragraphs_;
};

}  // namespace pluvo::formats::html
