#pragma once

#include "files/file_system.h"
#include "runs/outcome.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::runs {

/// A run whose originals are kept.
struct PastRun {
  std::string name;  ///< "20261121-142233-0": the time it began (UTC), and a number among those of one second
  std::string command;
  std::uint64_t documents = 0;  ///< whose originals are kept
  std::uint64_t notKept = 0;    ///< changed too, but not to be taken back
  std::uint64_t bytes = 0;
  bool going = false;        ///< still running
  bool refused = false;      ///< others may write its folder; nothing else is known of it
  std::uint32_t slices = 0;  ///< of a run with a name of its own; 0 for others
  std::int64_t begun = 0;    ///< in seconds since 1970
};

/// The outcome for a document when its run was taken back.
struct TakenBack {
  std::string path;
  bool asBefore = false;  ///< it was already
  std::optional<Failure> failure = std::nullopt;
};

/// The user's runs that can be taken back, or are refused.
class PastRuns {
 public:
  /// Throws DocumentError; CannotBegin (stateFolder) where their folder is not known.
  /// The folder is where the journal is, if not in the user's folder for states.
  explicit PastRuns(files::FileSystem& system,
                    const std::optional<std::string>& journalFolder = std::nullopt);

  /// The oldest first.
  const std::vector<PastRun>& all() const { return runs_; }
  /// The last one that is over; none where there is none.
  const PastRun* last() const;
  /// The last one that is over among those before it: the one to try where this cannot be put back whole.
  const PastRun* before(const std::string& name) const;

  /// Takes a run back, the last document first, and tells of each; of a run in slices all of them. A document
  /// that changed since is left as it is. Only the documents that could not be put back can be tried again.
  /// Throws DocumentError.
  void takeBack(const std::string& name, const std::function<void(const TakenBack&)>& tell);

  /// Leaves the documents as they are, and removes their originals. Of runs with names of their own.
  void forget(const std::string& name);

 private:
  void addNamed(const std::string& name);

  files::FileSystem& system_;
  std::string folder_;
  std::vector<PastRun> runs_;
};

}  // namespace pluvo::runs
