#pragma once

#include "files/file_system.h"
#include "runs/observer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace pluvo::runs {

/// The outcome of one slice.
struct SliceTold {
  enum class Stage : std::uint8_t { ended, going, brokenOff, neverBegun };
  std::string run;  ///< its name, or the file that it was read from
  std::uint32_t number = 1;
  std::uint32_t count = 1;
  Stage stage = Stage::neverBegun;
  std::string machines = {};   ///< that worked on it, with commas between; empty where that is not known
  std::int64_t attempts = 0;   ///< 0 where that is not known
  std::int64_t documents = 0;  ///< that it has
  std::int64_t done = 0;       ///< of these, without a failure
  std::int64_t failed = 0;
  std::int64_t missing = 0;  ///< not worked on
};
/// "ended", "going on", "broken off", "never begun"
std::string_view wordsOf(SliceTold::Stage stage);

/// Sources that make no one report: a sentence that says why.
class SlicesRefused : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// The results of slices of one request, out of the journal or out of what runs printed with --json, as one
/// run. A document that stands in several of them is told once: done rather than failed, failed rather than
/// missing, and of equals the last.
class SliceReport {
 public:
  class Source;

  /// Each source is a file or the name of a run in the journal; the list is what all documents were named by.
  /// Throws SlicesRefused where there is no such source, or where sources are of different requests. Throws
  /// CannotBegin (stateFolder) where the journal's folder is not known, DocumentError where it cannot be
  /// read.
  SliceReport(files::FileSystem& system, const std::vector<std::string>& sources,
              const std::optional<std::string>& journalFolder,
              std::optional<std::vector<std::string>> list = std::nullopt);
  ~SliceReport();
  SliceReport(const SliceReport&) = delete;
  SliceReport& operator=(const SliceReport&) = delete;

  /// Tells what became of each document; missing ones are left out, for the reason missing. Then slices
  /// and totals are known, and then "ends" is told.
  void tell(const std::vector<Observer*>& observers);

  const std::string& command() const { return command_; }  ///< of the first slice
  const std::string& request() const { return request_; }  ///< its digest
  const std::vector<SliceTold>& slices() const { return slices_; }
  const Totals& totals() const { return totals_; }
  std::int64_t missing() const { return missing_; }
  /// Whether every slice has ended, and every document is done with.
  bool isWhole() const;

 private:
  using Rank = std::uint64_t;
  void requireOneRequest();
  void rank();

  files::FileSystem& system_;
  std::vector<std::unique_ptr<Source>> sources_;
  std::optional<std::vector<std::string>> list_;
  std::string command_;
  std::string request_;
  std::unordered_map<std::uint64_t, Rank> best_;  ///< of the documents, by their paths
  std::vector<SliceTold> slices_;
  Totals totals_;
  std::int64_t missing_ = 0;
};

}  // namespace pluvo::runs
