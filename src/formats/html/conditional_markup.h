#pragma once

#include "walk_state.h"

#include <cstddef>

namespace pluvo::formats::html {

/// Takes comments and declarations. Some are markup under a condition: what Word reads is walked through,
/// what it does not read is passed by.
class ConditionalMarkup {
 public:
  explicit ConditionalMarkup(WalkState& walk) : walk_(walk) {}

  void comment(const Token& token);
  void declaration(const Token& token);

  /// Whether the walk goes through a comment.
  bool isInside() const { return end_ != 0; }
  /// The bytes of the comment are at their end.
  void leave();

 private:
  WalkState& walk_;
  std::size_t end_ = 0;       ///< of the comment that is walked through; 0 outside
  std::size_t outerEnd_ = 0;  ///< of the bytes around it
  bool lacksEndIf_ = false;   ///< there is none any more
};

}  // namespace pluvo::formats::html
