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

/// A match and its places: bytes, or units where units lie in memory. Two whole numbers, since one that is
/// put together from halves in memory makes the processor wait.
struct PlacedMatch {
  Position position = kNone;  ///< of its first unit; kNone where there is no match
  std::uint64_t places = 0;

  static constexpr Position kNone = -1;
  static PlacedMatch at(Position position, std::size_t from, std::size_t to) {
    return {position, std::uint64_t{to} << 32U | from};
  }
  bool isThere() const { return position != kNone; }
  /// [from, to)
  std::size_t from() const { return static_cast<std::uint32_t>(places); }
  std::size_t to() const { return static_cast<std::uint32_t>(places >> 32U); }
};

/// Matches, front to back, and how far they were looked for.
struct MatchBatch {
  std::vector<PlacedMatch> matches;
  std::size_t clearTo = 0;  ///< no other match has its anchor in front of this place
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

  static constexpr std::size_t kMostWaiting = 4;

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
