#include "files/reading.h"
#include "journal/journal.h"
#include "run_folder.h"

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

namespace pluvo::journal {

namespace {

using files::DocumentError;
using files::Problem;

/// Whether the file is that version. Its inode may be another one: an undo puts back bytes, not inodes.
bool isVersion(const files::Stamp& found, const files::Stamp& version) {
  return found.size == version.size && found.modifiedSeconds == version.modifiedSeconds &&
         found.modifiedNanoseconds == version.modifiedNanoseconds;
}

/// In the run's folder, or where it was left on its way there.
std::string originalOf(files::FileSystem& system, const Record& record, const std::string& run) {
  std::string path = originalIn(run, record.number);
  return record.beside.empty() || system.exists(path) ? path : record.beside;
}

void restore(files::FileSystem& system, const Record& record, const files::Stamp& found,
             const std::string& original) {
  const files::FileContent kept = files::readFile(system, original);
  const files::Bytes& bytes = kept.bytes;
  // A document's own file may have been written by a program that had it open; a copy may have another time.
  const bool same = record.beside.empty() ? kept.stamp.size == record.before.stamp.size
                                          : isVersion(kept.stamp, record.before.stamp);
  if (!same)
    throw DocumentError(Problem::damaged, "What is kept of this document, \"" + original +
                                              "\", is no longer what was replaced, so the document was left "
                                              "as it is.");
  files::NewVersion version;
  version.write = [&bytes](files::Output& out) { out.write(bytes.view); };
  version.check = [&bytes](const files::Bytes& written) {
    if (!std::ranges::equal(written.view, bytes.view))
      throw DocumentError(Problem::io, "The disk gave back other bytes than were written; check the disk.");
  };
  version.as = record.before;
  files::replaceFile(system, record.text, found, version);
}

/// Nothing hangs on it any more.
void removeIfPossible(files::FileSystem& system, const std::string& path) {
  try {
    system.remove(path);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): see above
  }
}

/// Which run a document was left by; read when it is first asked for.
class Changes {
 public:
  Changes(files::FileSystem& system, std::string folder) : system_(system), folder_(std::move(folder)) {}

  /// The run after which the document was as it is found; empty where none is known.
  std::string lastRunOn(const std::string& document, const files::Stamp& found) {
    if (!byDocument_) read();
    const auto [from, to] = byDocument_->equal_range(document);
    const auto change =
        std::find_if(from, to, [&](const auto& each) { return isVersion(found, each.second.first); });
    return change != to ? change->second.second : std::string();
  }

 private:
  void read() {
    byDocument_.emplace();
    for (const std::string& run : runNames(system_, folder_)) {
      for (Record& record : recordsIn(system_, pathIn(folder_, run))) {
        if (record.kind == Record::Kind::kept)
          byDocument_->emplace(std::move(record.text), std::pair(record.after, run));
      }
    }
  }

  files::FileSystem& system_;
  std::string folder_;
  std::optional<std::multimap<std::string, std::pair<files::Stamp, std::string>>> byDocument_;
};

DocumentError changedSince(const std::string& laterRun, const std::string& original) {
  if (!laterRun.empty())
    return {Problem::changed, "The run " + laterRun +
                                  " changed the document after this one, so it was left as it is; take that "
                                  "run back first, then this one again."};
  return {Problem::changed,
          "The document was changed after the run, so it was left as it is; its original is kept as \"" +
              original + "\"."};
}

Undone undoOne(files::FileSystem& system, const Record& record, const std::string& run, Changes& changes) {
  Undone undone{record.text};
  try {
    const files::Stamp found = system.statusAt(record.text).stamp;
    if (isVersion(found, record.after)) {
      const std::string original = originalOf(system, record, run);
      restore(system, record, found, original);
      if (original == record.beside) removeIfPossible(system, original);
    } else if (isVersion(found, record.before.stamp)) {
      undone.outcome = Outcome::asBefore;
    } else {
      throw changedSince(changes.lastRunOn(record.text, found), originalOf(system, record, run));
    }
  } catch (const DocumentError& problem) {
    undone.outcome = Outcome::failed;
    undone.problem = problem;
  } catch (const std::system_error& failure) {
    undone.outcome = Outcome::failed;
    undone.problem = DocumentError(
        Problem::io, "The document cannot be reached (" + failure.code().message() +
                         "); its original is kept as \"" + originalIn(run, record.number) + "\".");
  }
  return undone;
}

Run summaryOf(const std::string& name, const std::vector<Record>& records) {
  Run run;
  run.name = name;
  for (const Record& record : records) {
    switch (record.kind) {
      case Record::Kind::command:
        run.command = record.text;
        break;
      case Record::Kind::kept:
        ++run.documents;
        run.bytes += record.before.stamp.size;
        break;
      case Record::Kind::notKept:
        ++run.notKept;
        break;
    }
  }
  return run;
}

}  // namespace

std::vector<Run> runs(files::FileSystem& system, const std::string& folder) {
  std::vector<Run> found;
  try {
    for (const std::string& name : runNames(system, folder)) {
      const std::string path = pathIn(folder, name);
      Run run = summaryOf(name, recordsIn(system, path));
      if (run.documents == 0) continue;
      run.going = lockRun(system, path) == nullptr;
      found.push_back(std::move(run));
    }
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "The journal of earlier runs in \"" + folder + "\" cannot be read (" +
                                         failure.code().message() + ").");
  }
  return found;
}

void undo(files::FileSystem& system, const std::string& folder, const std::string& run,
          const std::function<void(const Undone&)>& report) {
  const std::string path = folder + "/" + run;
  try {
    if (run.find('/') != std::string::npos || !system.exists(journalIn(path)))
      throw DocumentError(Problem::io, "There is no run of this name; \"pluvo undo --list\" shows the runs.");
    const auto lock = lockRun(system, path);
    if (lock == nullptr)
      throw DocumentError(Problem::locked, "The run is still going on; wait for its end, or interrupt it.");
    const std::vector<Record> records = recordsIn(system, path);
    Changes changes(system, folder);
    bool whole = true;
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
      if (record->kind != Record::Kind::kept) continue;
      const Undone undone = undoOne(system, *record, path, changes);
      whole &= undone.outcome != Outcome::failed;
      report(undone);
    }
    if (whole) removeRun(system, path);
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "The journal of the run in \"" + path +
                                         "\" cannot be read or cleared (" + failure.code().message() +
                                         "); the documents are as reported.");
  }
}

}  // namespace pluvo::journal
