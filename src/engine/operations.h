#pragma once

#include "locator.h"
#include "prepared_search.h"
#include "trail.h"

#include <memory>
#include <optional>

namespace pluvo::engine {

/// The operations on a found block. Each routine works under its own tag, on the range that the location code
/// names; a code unknown does nothing.
class Operations {
 public:
  Operations(Trail& trail, const PreparedSearch& search, const WorkingRanges& ranges)
      : trail_(trail), search_(search), ranges_(ranges) {}

  /// Carries out the operation of the request. The fault is that of a refusal, already reported.
  std::optional<errors::Fault> perform() const;

  /// The range the operation acts on; null for a location unknown, or a text that is not asked for.
  word::Range* operated() const;

  /// The current block as an observer is shown it.
  Block block() const;

 private:
  std::optional<errors::Fault> InsertOperationText() const;
  std::optional<errors::Fault> ReplaceOperationText() const;
  std::optional<errors::Fault> DeleteOperationRange() const;
  std::optional<errors::Fault> HighlightOperationRange() const;

  template <class Work>
  std::optional<errors::Fault> onRange(errors::Tag tag, Work work) const;

  Trail& trail_;
  const PreparedSearch& search_;
  const WorkingRanges& ranges_;
};

}  // namespace pluvo::engine
