#pragma once

#include "journal/journal.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Runs that have a name and are made in slices, by as many programs on as many machines as see the journal.
///
/// Beside the folder of runs lies "named", and in it a folder for each run. "request" holds the facts that
/// slices share. Slices under way share "lock"; an undo holds it alone. Each slice that began has a folder as
/// a run has it, "3-of-8", to whose journal each attempt at the slice adds. No two programs write one
/// journal. Beside the records of originals it has the documents of the slice and their outcomes. The outcome
/// of a replaced document is on record before that happens, so that a later attempt knows which documents are
/// done. Earlier versions see no named runs, and read the rest of such a journal.
namespace pluvo::journal {

class OwnFolder;

/// Letters, digits, ".", "-" and "_", no more than 100, the first a letter or digit. It must not look like
/// the name of a run without a name of its own.
bool isNameForRun(std::string_view name);

/// The digest of the list of documents, whatever the order of its names.
struct ListDigest {
  std::uint64_t count = 0;
  std::uint64_t names = 0;  ///< of the names as they were listed
  std::uint64_t keys = 0;   ///< of the files that they name
  bool operator==(const ListDigest&) const = default;
};

/// The facts that slices of a run share.
struct NamedRequest {
  std::string run;  ///< its name
  std::uint32_t slices = 1;
  std::string request;  ///< the operations; equal texts are one request
  std::string command;  ///< of the slice that was begun first
  ListDigest list = {};
};

/// One slice, of which a new attempt begins.
struct SliceToBegin {
  NamedRequest of;
  std::uint32_t number = 1;
  bool keepsOriginals = true;
};

struct SliceDocument {
  std::string key;      ///< its absolute path without links
  std::string name;     ///< as it was listed
  std::string outcome;  ///< as the run recorded it; empty: not worked on
  /// It was about to be saved when the slice was killed, and the file does not tell whether it was. The
  /// outcome is what would have come of it.
  bool isUnclear = false;
};

/// An attempt at a slice. Times are by the clock of that machine.
struct Attempt {
  std::string machine;
  std::uint64_t process = 0;
  std::int64_t begun = 0;
  std::optional<std::int64_t> ended = std::nullopt;  ///< where it came to its end
};

struct SliceState {
  enum class Stage : std::uint8_t { neverBegun, going, brokenOff, ended };
  std::uint32_t number = 1;
  Stage stage = Stage::neverBegun;
  std::vector<Attempt> attempts;
  std::vector<SliceDocument> documents;
  std::uint64_t kept = 0;  ///< originals that can be put back
  std::uint64_t notKept = 0;
  std::uint64_t bytes = 0;  ///< of those that are kept
};

/// The names of the runs, in their order; those that undo refuses, too.
std::vector<std::string> namedRuns(files::FileSystem& system, const std::string& folder);

/// A run as its journal has it.
class NamedRun {
 public:
  /// The folder is that of the runs without names. Throws DocumentError where there is no such run, or where
  /// it is not the user's alone.
  NamedRun(files::FileSystem& system, const std::string& folder, const std::string& name);
  ~NamedRun();
  NamedRun(const NamedRun&) = delete;
  NamedRun& operator=(const NamedRun&) = delete;

  const NamedRequest& request() const { return request_; }
  /// From 1. Read anew with each call. Throws DocumentError.
  SliceState slice(std::uint32_t number) const;

  /// Takes all slices back, as undo does, several at the same time; one document is reported after the other.
  /// Throws DocumentError (locked) while one is going on.
  void takeBack(const std::function<void(const Undone&)>& report);
  /// Leaves the documents as they are, and removes all that is kept. Throws as takeBack does.
  void forget();

 private:
  class Held;
  std::unique_ptr<files::OpenFile> holdAlone() const;
  /// Several at the same time.
  void forEachBegun(const std::function<void(const Held&)>& visit) const;
  void remove(const Held& slice) const;
  void removeIfEmpty() const;

  files::FileSystem& system_;
  const std::string runs_;
  std::unique_ptr<OwnFolder> folder_;
  NamedRequest request_;
};

}  // namespace pluvo::journal
