#pragma once

#include "forms/cell_grid.h"
#include "mirror.h"

#include <memory>
#include <vector>

namespace pluvo::forms_win32 {

/// Where the controls of a page stand: forms' grid, within a margin, in pixels.
class Grid {
 public:
  /// Without the controls that stay in sight, where these stand elsewhere.
  Grid(const std::vector<std::unique_ptr<Mirror>>& mirrors, const Look& look, bool withoutKept);

  /// The least width at which no word is cut off.
  int leastWidth() const;
  int heightFor(int width, bool least) const;
  void arrange(int width, int height, int top) const;

 private:
  /// One control, or a line of buttons without places of their own.
  using Items = std::vector<Mirror*>;

  static std::vector<Items> lineUp(const std::vector<std::unique_ptr<Mirror>>& mirrors);
  static std::vector<forms::GridItem> itemsOf(const std::vector<Items>& places, bool withoutKept);
  int gap() const { return look_.px(7); }
  int margin() const { return look_.px(10); }
  void put(const Items& items, const RECT& room) const;

  const Look& look_;
  std::vector<Items> places_;
  forms::CellGrid grid_;
};

}  // namespace pluvo::forms_win32
