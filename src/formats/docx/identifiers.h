#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::docx {

/// Gives copies of elements that carry an id of their own another one: tracked insertions, deletions, moves
/// and changes of format.
class Identifiers {
 public:
  Identifiers(base::ByteSpan part, const std::string& partName) : part_(part), partName_(partName) {}

  /// The markup with fresh ids for all such elements in it.
  std::string withFreshIds(std::string_view markup);
  /// Others for the same part, to find out whether any are needed.
  Identifiers apart() const { return {part_, partName_}; }
  bool gaveAny() const { return last_.has_value(); }
  /// From here on those give ids, and these gave none. They must outlive these.
  void goOnWith(Identifiers& others) { others_ = &others; }

 private:
  std::uint32_t fresh();

  base::ByteSpan part_;
  std::string partName_;
  std::vector<std::uint32_t> used_;  ///< sorted, once asked for
  std::optional<std::uint32_t> last_;
  Identifiers* others_ = nullptr;
};

}  // namespace pluvo::docx
