#pragma once

#include "run_under_way.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace pluvo::journal {

/// How much the originals of all runs may take. The oldest runs give way to the one that is going on.
class OriginalsLimit {
 public:
  /// The originals of all runs together take no more than that.
  explicit OriginalsLimit(std::uint64_t limit) : limit_(limit) {}

  /// Whether the run can keep so many bytes more, be it after the oldest runs were forgotten. Throws
  /// std::system_error and DocumentError.
  bool makeRoomIn(const RunUnderWay& run, std::uint64_t bytes);

 private:
  struct Other {
    std::string name;
    std::uint64_t size = 0;
  };
  void weigh(const RunUnderWay& run);

  const std::uint64_t limit_;
  std::optional<std::deque<Other>> others_;  ///< the oldest first, weighed when first needed
  std::uint64_t size_ = 0;                   ///< of their originals
};

}  // namespace pluvo::journal
