#pragma once

#include "column.h"

namespace pluvo::view {

/// Where the arrow keys and their like lead to from an insertion point.
class Steps {
 public:
  explicit Steps(Column& column) : column_(column) {}

  /// To the next insertion point, or over a word.
  Position neighbour(Position position, bool forward, bool words);
  /// To the left or right as seen.
  Position beside(Position position, bool left);
  /// At least so many pixels up or down, to another line, in the column where the user began.
  Position vertical(Position position, qreal by);
  Position lineEnd(Position position, bool end);
  /// The user goes another way: the next step up or down begins a column.
  void forgetColumn() { preferredX_ = -1; }

 private:
  Position firstIn(std::size_t block, bool forward);

  Column& column_;
  qreal preferredX_ = -1;
};

}  // namespace pluvo::view
