#pragma once

#include "errors/context.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace pluvo::multifile {

/// Sorts a list of paths by their characters' codes, ignoring letter case. Paths that differ only in case
/// come next to each other in no particular order. Meant for short lists: the cost is quadratic.
class clsSorting {
 public:
  explicit clsSorting(errors::Context& context) : context_(context) {}

  /// Whether SortData has run since the data were set.
  bool Sorted() const { return sorted_; }
  /// 0 is ascending; with any other value SortData leaves the data as they are.
  std::int32_t SortType() const { return sortType_; }
  void SortType(std::int32_t type) { sortType_ = type; }
  std::vector<std::u16string> Data() const { return data_; }
  void Data(std::vector<std::u16string> data);
  void SortData();

 private:
  void ExchangeSort();

  errors::Context& context_;
  std::vector<std::u16string> data_;
  std::int32_t sortType_ = 0;
  bool sorted_ = false;
};

}  // namespace pluvo::multifile
