#pragma once

#include <cstdint>

namespace pluvo::engine {

/// The counts of a pass so far.
struct PassResult {
  std::int64_t found = 0;     ///< blocks, also one at which the pass was stopped
  std::int32_t operated = 0;  ///< blocks that had the operation, even if it is none or was refused
  std::int64_t refused = 0;   ///< operations that failed
  std::int32_t skipped = 0;   ///< blocks passed by, as was decided
  std::int64_t tooFar = 0;    ///< beginnings whose ending lies too far away
  std::int64_t faults = 0;    ///< given to the observer, those of refused operations among them
};

}  // namespace pluvo::engine
