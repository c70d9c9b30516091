#pragma once

#include "plan.h"
#include "runs/outcome.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

namespace pluvo::cli {

/// The line at the bottom of a terminal that tells how far a run has come, and the table when it is over.
class Progress {
 public:
  Progress(const Plan& plan, std::size_t documents);

  /// Takes the line away, so that something else may be printed.
  void clear();
  /// Puts it back, or brings it up to date; not more often than anybody can read.
  void show();

  void add(const runs::BlockReport& block);
  void add(const runs::Outcome& outcome);
  /// The table: what became of how many documents.
  void end(const runs::Totals& totals);

 private:
  using Clock = std::chrono::steady_clock;
  std::string line() const;
  double seconds() const;

  bool shown_;
  bool table_;
  bool drawn_ = false;
  std::size_t documents_;
  std::size_t done_ = 0;
  std::int64_t blocks_ = 0;
  std::int64_t blocksAtHand_ = 0;  ///< those of them in the document that is not over
  std::map<std::string, std::int64_t> failures_;
  Clock::time_point began_ = Clock::now();
  Clock::time_point drawnAt_ = {};
};

}  // namespace pluvo::cli
