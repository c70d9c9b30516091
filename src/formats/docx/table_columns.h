#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// How wide the cells of one table are, by its grid; a walk tells where its rows and cells begin. Bytes are
/// those after a start tag.
class TableColumns {
 public:
  explicit TableColumns(std::string_view afterTable);
  void beginRow(std::string_view afterRow);
  /// The width in twentieths of a point; 0 where neither grid nor cell tells.
  std::uint16_t cellWidth(std::string_view afterCell);

 private:
  std::vector<std::uint16_t> grid_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::docx
