#pragma once

#include "runs/outcome.h"

#include <string>

namespace pluvo::runs {

/// The part of the page that tells, document by document, what requests did not reach and which parts were
/// not looked into.
class NotReachedSection {
 public:
  void add(const Outcome& outcome);
  /// Empty where there is nothing to tell.
  std::string html() const;

 private:
  std::string notReached_;
  std::string notLookedInto_;
};

}  // namespace pluvo::runs
