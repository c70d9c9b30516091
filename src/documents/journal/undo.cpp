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

/// In the run's folder, be it a part, or where it was left on its way there. Where there is none, the run
/// never came to replace the document.
std::optional<std::string> originalOf(files::FileSystem& system, const Record& record,
                                      const std::string& run) {
  std::string path = originalIn(run, record.number);
  const bool isThere = system.exists(path);
  if (system.exists(record.beside) &&
      (!isThere || isVersion(system.statusAt(record.beside).stamp, record.before.stamp)))
    return record.beside;
  return isThere ? std::optional(path) : std::nullopt;
}

void requireSameOriginal(const Record& record, const files::Stamp& kept, const files::Stamp& document,
                         const std::string& original) {
  // A document's own file may have been written by a program that had it open.
  if (!isOriginal(kept, record, document))
    throw DocumentError(Problem::damaged, "What is kept of this document, \"" + original +
                                              "\", is no longer what was replaced, so the document was left "
                                              "as it is.");
}

void restore(files::FileSystem& system, const Record& record, const files::Stamp& found,
             const std::string& original) {
  const files::FileStatus status = system.statusAt(original);
  requireSameOriginal(record, status.stamp, found, original);
  const bool isOwnFile =
      status.stamp.device == found.device && status.permissions == record.before.permissions;
  if (isOwnFile && files::swapFile(system, record.text, found, original)) return;
  const files::FileContent kept = files::readFile(system, original);
  requireSameOriginal(record, kept.stamp, found, original);
  const files::Bytes& bytes = kept.bytes;
  files::NewVersion version;
  version.write = [&bytes](files::Output& out) { out.write(bytes.view); };
  version.check = [&bytes](const files::Bytes& written) {
    if (!std::ranges::equal(written.view, bytes.view))
      throw DocumentError(Problem::io, "The disk gave back other bytes than were written; check the disk.");
  };
  version.as = record.before;
  // Not on record is what lies beside a document that was moved and left a link.
  if (original != record.beside && system.resolve(record.text) == record.text)
    version.temporary = record.beside;
  files::replaceFile(system, record.text, found, version);
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
      const auto records = recordsIn(system_, pathIn(folder_, run));
      if (!records) continue;
      for (Record& record : keptOf(*records))
        byDocument_->emplace(std::move(record.text), std::pair(record.after, run));
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
    const auto original = originalOf(system, record, run);
    // An undo that was killed may have swapped the two; both may be of one size and moment.
    const bool isTakenBack = original && isFileOf(system.statusAt(*original).stamp, record.after);
    const bool isAsBefore =
        isTakenBack || (!isFileOf(found, record.after) && isVersion(found, record.before.stamp));
    if (!isAsBefore && isVersion(found, record.after)) {
      restore(system, record, found, original.value_or(originalIn(run, record.number)));
    } else if (isAsBefore || !original) {
      undone.outcome = Outcome::asBefore;
    } else {
      throw changedSince(changes.lastRunOn(record.text, found), *original);
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

/// An original that a document was swapped with is the version that the run put there, and goes.
void noteTakenBack(files::FileSystem& system, const files::OpenFile& journal, const Record& record,
                   const std::string& run) {
  // The line before may lack its end.
  const std::string line = "\n" + lineOf({Record::Kind::takenBack, record.text, record.number, {}, {}, {}});
  try {
    files::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(line.data()), line.size());
    while (!bytes.empty()) bytes = bytes.subspan(system.write(journal.handle(), bytes));
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): the document tells as much
    return;
  }
  removeIfPossible(system, originalIn(run, record.number));
  clearBeside(system, run, record);
}

Run summaryOf(const std::string& name, const std::vector<Record>& records) {
  Run run;
  run.name = name;
  for (const Record& record : records) {
    if (record.kind == Record::Kind::command) run.command = record.text;
    if (record.kind == Record::Kind::notKept) ++run.notKept;
  }
  for (const Record& record : keptOf(records)) {
    ++run.documents;
    run.bytes += record.before.stamp.size;
  }
  return run;
}

}  // namespace

std::vector<Run> runs(files::FileSystem& system, const std::string& folder) {
  std::vector<Run> found;
  try {
    for (const std::string& name : runNames(system, folder)) {
      const std::string path = pathIn(folder, name);
      const auto records = recordsIn(system, path);
      if (!records) continue;
      Run run = summaryOf(name, *records);
      if (run.documents == 0) continue;
      run.going = system.exists(lockIn(path)) && lockRun(system, path) == nullptr;
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
    const auto records = recordsIn(system, path);
    if (!records)
      throw DocumentError(Problem::io, "The journal of the run, \"" + journalIn(path) +
                                           "\", cannot be read, so nothing was changed; check the disk it is "
                                           "on, and who may read it.");
    const std::vector<Record> kept = keptOf(*records);
    const files::OpenFile journal(system, system.openToAppend(journalIn(path)));
    Changes changes(system, folder);
    bool whole = true;
    for (auto record = kept.rbegin(); record != kept.rend(); ++record) {
      clearBeside(system, path, *record);
      const Undone undone = undoOne(system, *record, path, changes);
      if (undone.outcome != Outcome::failed) noteTakenBack(system, journal, *record, path);
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
