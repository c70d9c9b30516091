#pragma once

#include "cfb/compound_file.h"
#include "word_file.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace pluvo::doc {

/// The properties of a document, without words deleted from its text. Each is as long as it was.
struct BlankedProperties {
  struct Stream {
    cfb::Id id = cfb::kRoot;
    std::vector<std::uint8_t> bytes;
  };
  std::vector<Stream> streams;       ///< those of the property sets that change
  std::vector<std::uint8_t> titles;  ///< the table of titles (Table::titles); empty where it does not change
};

/// Title, subject, key words, comments, category, the titles of parts, a document's own properties and its
/// links hold copies of its text. Words and phrases in them that were deleted from the text, and stand
/// nowhere in the edited text any more, become blanks. The names of author and program stay.
///
/// The property sets are those of the file, the table of titles is that of the edited streams. A property set
/// that cannot be read stays.
BlankedProperties blankedProperties(const cfb::CompoundFile& file, const Text& edited,
                                    std::span<const std::u16string> deleted);

}  // namespace pluvo::doc
