#pragma once

#include "runs/outcome.h"

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace pluvo::runs {

/// Hands out the documents of a list to jobs and brings their results into the order of the list.
///
/// The output of a document goes straight on when all before it are done, and waits until then otherwise. No
/// job runs far ahead, neither by documents nor by blocks. So the number of jobs bounds the waiting outcomes,
/// not the list.
class Results {
 public:
  /// Calls for one document follow another, also from different jobs.
  struct Sink {
    std::function<void(std::size_t document, const BlockReport& block)> block;
    std::function<void(std::size_t document, const Outcome& outcome)> document;
  };

  Results(std::size_t documents, int jobs, Sink sink);

  /// The next document to work on; none at the end of the list or after a stop. Waits while it is too far
  /// ahead of the first that is not done.
  std::optional<std::size_t> next();
  void block(std::size_t document, const BlockReport& block);
  void done(std::size_t document, Outcome outcome);

  /// No document is handed out any more. The documents at hand may still come.
  void stop();
  /// A job cannot go on: stops all and keeps the exception.
  void fail(std::exception_ptr error);
  /// Throws the exception of a failed job.
  void rethrow() const;

  /// How many of the first documents were handed out.
  std::size_t handedOut() const;

 private:
  struct Lane {
    std::vector<BlockReport> blocks;
    std::optional<Outcome> outcome;
  };

  void passOn(std::size_t document, Lane& lane);

  const std::size_t documents_;
  const std::size_t ahead_;
  const Sink sink_;

  mutable std::mutex mutex_;
  std::condition_variable moved_;
  std::map<std::size_t, Lane> lanes_;
  std::size_t next_ = 0;
  std::size_t first_ = 0;  ///< of those not done
  bool stopped_ = false;
  std::exception_ptr error_;
};

}  // namespace pluvo::runs
