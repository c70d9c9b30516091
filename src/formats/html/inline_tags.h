#pragma once

#include "page_text.h"
#include "paragraphs.h"
#include "walk_state.h"
#include "whole_elements.h"

namespace pluvo::formats::html {

/// Opens and closes inline elements. What Word writes for a tab, a field's mark or a reference is a character
/// with all that is in it.
class InlineTags {
 public:
  InlineTags(WalkState& walk, Paragraphs& paragraphs, PageText& text, WholeElements& elements)
      : walk_(walk), paragraphs_(paragraphs), text_(text), elements_(elements) {}

  void open(const Token& token, const Style& style, const Attributes& attributes);
  void close(const Token& token);

 private:
  bool takeSpecial(const Token& token, const Style& style);
  void fieldMark(Character::Kind kind, char16_t unit, Extent bytes);
  bool isFiller(const Token& token, Extent& filler) const;

  WalkState& walk_;
  Paragraphs& paragraphs_;
  PageText& text_;
  WholeElements& elements_;
};

}  // namespace pluvo::formats::html
