#pragma once

#include "text/positions.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace pluvo::text {

/// Matches in the bytes of a text, front to back, and how far they were looked for.
struct MatchBatch {
  struct Match {
    Position position = 0;   ///< of its first unit
    std::uint32_t from = 0;  ///< its places: [from, to)
    std::uint32_t to = 0;
  };
  std::vector<Match> matches;
  /// No other match has its anchor in front of this place: a byte, or a unit where units lie in memory.
  std::size_t clearTo = 0;
  bool isLast = false;
  bool gaveUp = false;  ///< the last batch: comparing made too much work, and nothing is clear
};

/// Finds matches in a thread of its own, a little ahead of the thread that takes them.
class MatchesAhead {
 public:
  using Find = std::function<MatchBatch()>;

  /// Find is called until it gives the last batch or this is destroyed. Throws std::system_error where the
  /// machine has no thread for it.
  explicit MatchesAhead(Find find);
  MatchesAhead(const MatchesAhead&) = delete;
  MatchesAhead& operator=(const MatchesAhead&) = delete;
  ~MatchesAhead();

  /// The next batch; not after the last one. Throws what find threw.
  MatchBatch take();

 private:
  void findAll();

  static constexpr std::size_t kMostWaiting = 8;

  Find find_;
  std::mutex mutex_;
  std::condition_variable found_;
  std::condition_variable taken_;
  std::deque<MatchBatch> batches_;
  std::exception_ptr thrown_;
  bool stops_ = false;
  std::thread thread_;  ///< begun when all else is there
};

}  // namespace pluvo::text
