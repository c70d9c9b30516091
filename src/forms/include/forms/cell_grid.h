#pragma once

#include "forms/control.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace pluvo::forms {

/// One item in a form's grid, with the facts that a renderer knows of it. Lengths are the renderer's.
struct GridItem {
  /// One without columns is a line of its own below the item before it.
  Cell cell;
  /// A hidden item takes no room.
  bool shown = true;
  /// More height is of use to it.
  bool grows = false;
  /// It labels the box below it.
  bool heads = false;
  /// How high it is at that width; at least, where it can spare some.
  std::function<int(int width, bool least)> heightFor;
};

struct GridPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

/// The cells where the grid is too narrow for two halves: the right one below the left, each of all twelve
/// columns. Where no item spans rows, each row is divided by itself. A row with a cell across the middle is
/// divided at that cell, which stays with the cells right of it.
std::vector<Cell> inOneColumn(std::vector<Cell> cells);

/// The arithmetic of forms' grid, the same for all renderers. It has twelve columns of equal width. Rows are
/// as high as their items ask for at that width, and growing rows share the rest. A heading is nearer to the
/// cells below it than to those above.
class CellGrid {
 public:
  CellGrid(std::vector<GridItem> items, int columnGap, int rowGap);

  /// The width at which each item that is shown has the width wanted for it.
  int widthFor(const std::function<int(std::size_t item)>& wanted) const;
  int heightFor(int width, bool least) const;
  /// Where each item stands. Where height is short, growing rows give up what they can spare, from the
  /// last on.
  std::vector<GridPlace> arranged(int width, int height) const;

 private:
  struct Row {
    int gap = 0;  ///< above it
    int height = 0;
    int line = 0;    ///< the height of what does not grow
    int weight = 0;  ///< its claim on the rest
    bool heading = true;
    bool used = false;
  };

  int left(const Cell& cell, int width) const;
  int widthOf(const Cell& cell, int width) const;
  int heightOf(const GridItem& item, int width, bool least) const;
  std::vector<Row> rows(int width, bool least) const;
  void addGaps(std::vector<Row>& rows) const;
  /// Gives the rows the rest of the height, or takes the missing height.
  void share(std::vector<Row>& rows, int width, int height) const;

  std::vector<GridItem> items_;
  int columnGap_;
  int rowGap_;
};

}  // namespace pluvo::forms
