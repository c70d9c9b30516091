#pragma once

#include "forms/control.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace pluvo::forms {

/// One thing in a form's grid, and what a renderer knows of it. Lengths are the renderer's.
struct GridItem {
  /// One without columns is a line of its own below what comes before it.
  Cell cell;
  /// What is hidden takes no room.
  bool shown = true;
  /// More height is of use to it.
  bool grows = false;
  /// It says what the box below it is for.
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
/// columns. Where nothing is of several rows, each row is divided by itself; one in which a cell stands
/// across the middle is divided at that cell, which stays with what is right of it.
std::vector<Cell> inOneColumn(std::vector<Cell> cells);

/// The arithmetic of forms' grid, the same for all renderers: twelve columns of equal width, rows as high as
/// what stands in them asks for at that width, what is left shared by the rows of what grows. A heading is
/// nearer to what it heads than to what stands above it.
class CellGrid {
 public:
  CellGrid(std::vector<GridItem> items, int columnGap, int rowGap);

  /// The width at which each item that is shown has the width wanted for it.
  int widthFor(const std::function<int(std::size_t item)>& wanted) const;
  int heightFor(int width, bool least) const;
  /// Where each item stands. Of less height than all needs, what grows gives up what it can spare, from the
  /// last on.
  std::vector<GridPlace> arranged(int width, int height) const;

 private:
  struct Row {
    int gap = 0;  ///< above it
    int height = 0;
    int line = 0;    ///< the height of what does not grow
    int weight = 0;  ///< its claim on what is left
    bool heading = true;
    bool used = false;
  };

  int left(const Cell& cell, int width) const;
  int widthOf(const Cell& cell, int width) const;
  int heightOf(const GridItem& item, int width, bool least) const;
  std::vector<Row> rows(int width, bool least) const;
  void addGaps(std::vector<Row>& rows) const;
  /// Gives the rows what is left of the height, or takes what is lacking.
  void share(std::vector<Row>& rows, int width, int height) const;

  std::vector<GridItem> items_;
  int columnGap_;
  int rowGap_;
};

}  // namespace pluvo::forms
