#pragma once

#include "mirror.h"

#include <vector>

namespace pluvo::forms_win32 {

/// Where the controls of a page stand: their cells, in rows that are as high as they need be. Rows with boxes
/// of several lines share what is left.
class Grid {
 public:
  Grid(const std::vector<std::unique_ptr<Mirror>>& mirrors, const Look& look);

  /// The least width at which no word is cut off.
  int leastWidth() const;
  int heightFor(int width, bool least) const;
  void arrange(int width, int height, int top) const;

 private:
  /// One control, or a line of buttons without places of their own.
  struct Place {
    std::vector<Mirror*> items;
    forms::Cell cell;
    bool shown() const;
    bool grows() const { return items.front()->grows(); }
  };
  struct Row {
    int gap = 0;  ///< above it
    int height = 0;
    int line = 0;    ///< the height of what does not grow
    int weight = 0;  ///< its claim on what is left
    bool heading = true;
    bool used = false;
  };

  int gap() const { return look_.px(7); }
  int margin() const { return look_.px(10); }
  int left(const forms::Cell& cell, int width) const;
  int widthOf(const forms::Cell& cell, int width) const;
  std::vector<Row> rows(int width, bool least) const;
  static int heightOf(const Place& place, int width, bool least);
  void put(const Place& place, const RECT& room) const;

  std::vector<Place> places_;
  const Look& look_;
};

}  // namespace pluvo::forms_win32
