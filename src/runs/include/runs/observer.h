#pragma once

#include "runs/listing.h"
#include "runs/outcome.h"

#include <cstddef>
#include <string>

namespace pluvo::runs {

/// Is told the steps of a run, document by document in the order of its list. Calls follow one another; they
/// may come from different threads. What one throws ends the run.
class Observer {
 public:
  virtual ~Observer() = default;
  /// The documents are known, and none has been opened yet.
  virtual void begins(std::size_t /*documents*/) {}
  /// Whether blocks are wanted at all; reading their text costs.
  virtual bool wantsBlocks() const { return false; }
  /// The blocks of a document come before its outcome.
  virtual void block(const std::string& /*path*/, const BlockReport& /*block*/) {}
  virtual void document(const Outcome& /*outcome*/) {}
  virtual void leftOut(const LeftOut& /*leftOut*/) {}
  /// Nothing else comes.
  virtual void ends(const Totals& /*totals*/) {}
};

}  // namespace pluvo::runs
