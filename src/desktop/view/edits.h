#pragma once

#include "view/changes.h"

#include <vector>

namespace pluvo::view {

/// The stretches of a text that edits have touched, gathered as the edits come.
class Edits {
 public:
  /// A span of the text as it is was replaced.
  void add(Span span, Position newLength);
  bool empty() const { return edits_.empty(); }
  std::vector<Exchange> exchanges() const;

 private:
  /// Of the text as it is.
  struct Edit {
    Position from = 0;
    Position to = 0;
    Position growth = 0;  ///< against the text it stands for
  };
  /// In order, and not touching one another.
  std::vector<Edit> edits_;
};

/// Whether one of them is of a span, or next to it.
bool touch(const std::vector<Exchange>& exchanges, Span before);

}  // namespace pluvo::view
