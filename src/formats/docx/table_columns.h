#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// How wide the cells of one table are, by its grid; a walk tells where its rows and cells begin. Bytes are
/// those behind a start tag.
class TableColumns {
 public:
  explicit TableColumns(std::string_view behindTable);
  void beginRow(std::string_view behindRow);
  /// The width in twentieths of a point; 0 where neither grid nor cell tells.
  std::uint16_t cellWidth(std::string_view behindCell);

 private:
  std::vector<std::uint16_t> grid_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::docx
