#pragma once

#include "page_text.h"
#include "walk_state.h"

#include <array>
#include <cstddef>
#include <vector>

namespace pluvo::formats::html {

/// Takes elements with all that is in them: those that are one character, and those that are none.
class WholeElements {
 public:
  WholeElements(WalkState& walk, PageText& text) : walk_(walk), text_(text) {}

  /// An element up to its end tag; the walk goes on after it. Within a paragraph none that holds blocks.
  /// False where it has no end tag.
  bool skip(const Token& token, bool withinParagraph, Extent& whole);
  /// One that is one character.
  void picture(const Token& token, const Attributes& attributes);
  /// One without text.
  void nothing(const Token& token);

 private:
  Extent skipSelect(const Token& token);

  WalkState& walk_;
  PageText& text_;
  /// Elements of a name that have no end tag, by where they begin, so far as that is known.
  struct Unmatched {
    std::size_t to = 0;
    std::vector<std::size_t> begins;
  };
  std::array<Unmatched, static_cast<std::size_t>(Name::count)> unmatched_{};
};

}  // namespace pluvo::formats::html
