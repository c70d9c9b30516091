#pragma once

#include <vector>

#include "text/original.h"
#include "text/run_map.h"

namespace pluvo::model {

/// A table, known by its index in Content::tables. A table inside a cell of another has that one as parent.
struct Table {
  std::int32_t parent = kNone;
  static constexpr std::int32_t kNone = -1;
};

/// What the edit policy must know of a character besides the character itself.
struct Structure {
  /// The innermost table it lies in, cell and row marks included; Table::kNone outside tables.
  std::int32_t table = Table::kNone;
  /// Character 12 only: it ends a section, and with it its paragraph.
  bool sectionMark = false;
  bool operator==(const Structure&) const = default;
};

/// A document as a reader hands it over. The maps are as long as the text. The text ends with a paragraph mark
/// that no edit removes.
struct Content {
  text::OriginalText text;
  text::RunMap<text::Visibility> visibility;
  text::RunMap<std::uint8_t> highlight;  ///< Word's colour index, 0 for none
  text::RunMap<Structure> structure;
  std::vector<Table> tables;
};

}  // namespace pluvo::model
