#include "forms/cell_grid.h"

#include <gtest/gtest.h>

namespace pluvo::forms {
namespace {

GridItem item(Cell cell, int height, bool grows = false, bool heads = false) {
  // What grows can spare half of its height.
  return {cell, true, grows, heads, [height](int, bool least) { return least ? height / 2 : height; }};
}

std::string words(const std::vector<GridPlace>& places) {
  std::string all;
  for (const GridPlace& place : places)
    all += std::to_string(place.left) + "," + std::to_string(place.top) + " " + std::to_string(place.width) +
           "x" + std::to_string(place.height) + "; ";
  return all;
}

TEST(CellGrid, StandsInOneColumnWhereItIsNarrow) {
  const std::pair<std::vector<Cell>, std::vector<Cell>> cases[] = {
      // Halves with a box of several rows; what stands across goes below both.
      {{{0, 0, 1, 12}, {1, 0, 3, 6}, {1, 6, 1, 2}, {1, 8, 1, 4}, {4, 0, 1, 12}},
       {{0, 0, 1, 12}, {1, 0, 3, 12}, {4, 0, 1, 4}, {4, 4, 1, 8}, {7, 0, 1, 12}}},
      // Row by row.
      {{{0, 0, 1, 6}, {0, 6, 1, 6}, {1, 0, 1, 2}}, {{0, 0, 1, 12}, {1, 0, 1, 12}, {2, 0, 1, 4}}},
      // A button right of a box; a tick, and what a list is for beside it; a picture before its heading.
      {{{0, 0, 1, 10}, {0, 10, 1, 2}, {1, 0, 1, 12}}, {{0, 0, 1, 12}, {1, 0, 1, 12}, {2, 0, 1, 12}}},
      {{{0, 0, 1, 5}, {0, 5, 1, 4}, {0, 9, 1, 3}}, {{0, 0, 1, 12}, {1, 0, 1, 7}, {1, 7, 1, 5}}},
      {{{0, 0, 1, 1}, {0, 1, 1, 11}}, {{0, 0, 1, 1}, {0, 1, 1, 11}}},
      // Lines of their own.
      {{{0, 0, 1, 0}}, {{0, 0, 1, 0}}},
  };
  for (const auto& [wide, narrow] : cases) EXPECT_EQ(inOneColumn(wide), narrow);
}

TEST(CellGrid, PutsEachItemIntoItsCells) {
  GridItem hidden = item({5, 0, 1, 12}, 90);
  hidden.shown = false;
  struct Case {
    const char* what;
    std::vector<GridItem> items;
    int height;
    std::string places;
    int needed;
  };
  // Of twelve columns with gaps of 10 between them each is 10 wide.
  const Case cases[] = {
      {"side by side, in the middle of their line",
       {item({0, 0, 1, 6}, 20), item({0, 6, 1, 6}, 30)},
       30,
       "0,5 110x20; 120,0 110x30; ",
       30},
      {"nearer to what they head",
       {item({0, 0, 1, 12}, 20, false, true), item({1, 0, 1, 12}, 30)},
       54,
       "0,0 230x20; 0,24 230x30; ",
       54},
      {"lines of their own", {item({}, 20), item({}, 20)}, 48, "0,0 230x20; 0,28 230x20; ", 48},
      {"what is left is shared by claim",
       {item({0, 0, 1, 12}, 20, true), item({1, 0, 1, 4}, 20, true)},
       88,
       "0,0 230x50; 0,58 70x30; ",
       48},
      {"what lacks is taken from the last on",
       {item({0, 0, 1, 12}, 20, true), item({1, 0, 1, 12}, 20, true)},
       35,
       "0,0 230x17; 0,25 230x10; ",
       48},
      {"over several rows, and hidden ones",
       {item({0, 0, 2, 6}, 60, true), item({0, 6, 1, 6}, 20), item({1, 6, 1, 6}, 20), hidden},
       60,
       "0,0 110x60; 120,0 110x20; 120,28 110x20; 0,0 0x0; ",
       60},
      {"cells beyond the grid", {item({0, 15, 0, 40}, 20)}, 20, "220,0 10x20; ", 20},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.what);
    const CellGrid grid(each.items, 10, 8);
    EXPECT_EQ(words(grid.arranged(230, each.height)), each.places);
    EXPECT_EQ(grid.heightFor(230, false), each.needed);
  }
  const CellGrid halves({item({0, 0, 1, 6}, 20), item({0, 6, 1, 6}, 20)}, 10, 8);
  EXPECT_EQ(halves.widthFor([](std::size_t i) { return i == 0 ? 50 : 110; }), 230);
}

}  // namespace
}  // namespace pluvo::forms
