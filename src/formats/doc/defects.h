#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::doc {

/// The defects of a document by kind: how many of each, and where the first one is.
class Defects {
 public:
  /// The kind is told apart by its text and by the number of a table.
  void note(std::string_view kind, std::size_t at, std::size_t table = 0, std::size_t count = 1) {
    const auto found = std::ranges::find_if(
        kinds_, [&](const Kind& each) { return each.text == kind && each.table == table; });
    if (found != kinds_.end()) {
      found->count += count;
    } else {
      kinds_.push_back({kind, table, at, count});
    }
  }
  bool empty() const { return kinds_.empty(); }

  /// The first kind of which the others have fewer; empty where there is none.
  std::string firstBeyond(const Defects& others) const {
    for (const Kind& kind : kinds_) {
      const auto before = std::ranges::find_if(others.kinds_, [&](const Kind& each) {
        return each.text == kind.text && each.table == kind.table;
      });
      if (before != others.kinds_.end() && before->count >= kind.count) continue;
      const std::string table = kind.table == 0 ? "" : "table " + std::to_string(kind.table) + " ";
      return table + std::string(kind.text) + " (" + std::to_string(kind.at) + ")";
    }
    return {};
  }

 private:
  struct Kind {
    std::string_view text;
    std::size_t table = 0;
    std::size_t at = 0;
    std::size_t count = 0;
  };
  std::vector<Kind> kinds_;
};

}  // namespace pluvo::doc
