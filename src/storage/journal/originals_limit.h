#pragma once

#include "run_under_way.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::journal {

/// How much the originals of all runs may take. The oldest runs give way to the one that is going on. Each
/// run records what those before it keep, so that the next one asks only the newest of them.
class OriginalsLimit {
 public:
  /// The originals of all runs together take no more than that.
  explicit OriginalsLimit(std::uint64_t limit) : limit_(limit) {}

  /// To be called while the run begins, with the names of those before it, the oldest first. The record for
  /// its journal, where the newest of them tells what all keep. Else they are weighed when first needed.
  std::optional<Record> ask(const RunUnderWay& run, const std::vector<std::string>& names);

  /// Whether the run can keep so many bytes more, be it after the oldest runs were forgotten. Throws
  /// std::system_error and DocumentError.
  bool makeRoomIn(RunUnderWay& run, std::uint64_t bytes);

 private:
  struct Other {
    std::string name;
    std::uint64_t size = 0;
  };
  void weigh(RunUnderWay& run);

  const std::uint64_t limit_;
  bool isAsked_ = false;                     ///< the size is what the newest told, or less was kept since
  std::optional<std::deque<Other>> others_;  ///< the oldest first, where they were weighed
  std::uint64_t size_ = 0;                   ///< of the originals of all others
};

}  // namespace pluvo::journal
