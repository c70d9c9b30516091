#include "files/reading.h"
#include "journal/journal.h"
#include "taking_back.h"

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

/// A run that is taken back.
struct Source {
  files::FileSystem& system;
  const OwnFolder& run;

  files::Place placeOf(const Record& record) const { return run.at(originalName(record.number)); }
  std::string pathOf(const Record& record) const { return pathIn(run.path(), originalName(record.number)); }
};

struct Original {
  files::Place place;
  std::string path;
  files::FileStatus status;
};

/// In the run's folder, be it a part, or where it was left on its way there. Where there is none, the run
/// never came to replace the document.
std::optional<Original> originalOf(const Source& source, const Record& record, const files::Stamp& document,
                                   const std::optional<files::OpenFolder>& folder) {
  files::FileSystem& system = source.system;
  std::optional<Original> kept;
  if (const files::Place place = source.placeOf(record); system.exists(place))
    kept = Original{place, source.pathOf(record), system.statusAt(place)};
  if (kept && isOriginal(system, source.run, kept->status, record, document)) return kept;
  if (folder && system.exists(folder->at(record.beside))) {
    const files::Place beside = folder->at(record.beside);
    const files::FileStatus status = system.statusAt(beside);
    const std::string path = record.text.substr(0, record.text.rfind('/') + 1) + record.beside;
    if (isOriginalBeside(source.run, status, record)) return Original{beside, path, status};
  }
  return kept;
}

void requireSameOriginal(const Source& source, const Record& record, const files::FileStatus& kept,
                         const files::Stamp& document, const Original& original) {
  // A document's own file may have been written by a program that had it open.
  const bool isBeside = original.place.folder != source.run.handle();
  if (isBeside ? !isOriginalBeside(source.run, kept, record)
               : !isOriginal(source.system, source.run, kept, record, document))
    throw DocumentError(Problem::damaged,
                        "The kept original of this document, \"" + original.path +
                            "\", is no longer the version that was replaced, so the document was left "
                            "as it is.");
}

/// Another user could read the original in the place of a file of theirs.
void requireSameOwner(const Source& source, const Record& record, const files::FileStatus& found,
                      const Original& original) {
  if (!record.knowsFile() || found.owner == record.before.owner || found.owner == source.system.user())
    return;
  throw DocumentError(Problem::changed,
                      "The document belongs to another user since the run, so it was left as it is; its "
                      "original is kept as \"" +
                          original.path + "\".");
}

void restore(const Source& source, const Record& record, const files::FileStatus& found,
             const Original& original) {
  files::FileSystem& system = source.system;
  requireSameOriginal(source, record, original.status, found.stamp, original);
  requireSameOwner(source, record, found, original);
  const bool isOwnFile = original.status.stamp.device == found.stamp.device &&
                         original.status.permissions == record.before.permissions;
  if (isOwnFile && files::swapFile(system, record.text, found.stamp, original.place)) return;
  const files::OpenFile open(system, system.openToRead(original.place));
  const files::FileContent kept = files::readFile(system, open.handle());
  requireSameOriginal(source, record, system.status(open.handle()), found.stamp, original);
  const base::Bytes& bytes = kept.bytes;
  files::NewVersion version;
  version.write = [&bytes](base::Output& out) { out.write(bytes.view); };
  version.check = [&bytes](const base::Bytes& written) {
    if (!std::ranges::equal(written.view, bytes.view))
      throw DocumentError(Problem::io, "The disk gave back other bytes than were written; check the disk.");
  };
  version.as = record.before;
  if (!record.knowsFile()) {
    version.as->owner = found.owner;
    version.as->group = found.group;
  }
  // The file beside a document that was moved and left a link is not on record.
  if (original.path == source.pathOf(record) && system.resolve(record.text) == record.text)
    version.temporary = record.beside;
  files::replaceFile(system, record.text, found.stamp, version);
}

/// Which run a document was left by; read when it is first asked for.
class Changes {
 public:
  /// The folder of runs; nullptr where there is none.
  Changes(files::FileSystem& system, const OwnFolder* runs) : system_(system), runs_(runs) {}

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
    if (runs_ == nullptr) return;
    for (const std::string& name : runNames(system_, *runs_)) {
      try {
        const auto run = openRunIfThere(system_, *runs_, name);
        const auto records = run ? recordsIn(system_, *run) : std::nullopt;
        if (!records) continue;
        for (Record& record : keptOf(*records))
          byDocument_->emplace(std::move(record.text), std::pair(record.after, name));
      } catch (const DocumentError&) {  // NOLINT(bugprone-empty-catch): not this user's
      }
    }
  }

  files::FileSystem& system_;
  const OwnFolder* runs_;
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

Undone undoOne(const Source& source, const Record& record, const std::optional<files::OpenFolder>& folder,
               Changes& changes) {
  files::FileSystem& system = source.system;
  Undone undone{record.text};
  try {
    const files::FileStatus found = system.statusAt(record.text);
    const auto original = originalOf(source, record, found.stamp, folder);
    // An undo that was killed may have swapped the two; both may be of one size and moment.
    const bool isTakenBack = original && isFileOf(original->status.stamp, record.after);
    const bool isAsBefore =
        isTakenBack || (!isFileOf(found.stamp, record.after) && isVersion(found.stamp, record.before.stamp));
    if (!isAsBefore && original && isVersion(found.stamp, record.after)) {
      restore(source, record, found, *original);
    } else if (!isAsBefore && isVersion(found.stamp, record.after)) {
      throw DocumentError(Problem::damaged, "The kept original of this document, \"" + source.pathOf(record) +
                                                "\", is gone, so the document was left as it is.");
    } else if (isAsBefore || !original) {
      undone.outcome = Outcome::asBefore;
    } else {
      throw changedSince(changes.lastRunOn(record.text, found.stamp), original->path);
    }
  } catch (const DocumentError& problem) {
    undone.outcome = Outcome::failed;
    undone.problem = problem;
  } catch (const std::system_error& failure) {
    undone.outcome = Outcome::failed;
    undone.problem =
        DocumentError(Problem::io, "The document cannot be reached (" + failure.code().message() +
                                       "); its original is kept as \"" + source.pathOf(record) + "\".");
  }
  return undone;
}

/// An original that a document was swapped with is the version that the run put there, and goes.
void noteTakenBack(const Source& source, const files::OpenFile& journal, const Record& record,
                   const std::optional<files::OpenFolder>& folder) {
  files::FileSystem& system = source.system;
  const std::string line =
      kUnlessWhole + lineOf({Record::Kind::takenBack, record.text, record.number, {}, {}, {}});
  try {
    base::ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(line.data()), line.size());
    while (!bytes.empty()) bytes = bytes.subspan(system.write(journal.handle(), bytes));
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): the document tells as much
    return;
  }
  removeIfPossible(system, source.placeOf(record));
  clearBeside(system, source.run, record, folder);
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

/// A run without documents, which goes with its undo. Where that is killed the next run finds it not ended,
/// and so looks for what was left beside documents. On a full disk there is none.
std::optional<Recorder> runOfUndo(files::FileSystem& system, const std::string& folder,
                                  const std::string& undone) {
  try {
    return std::optional<Recorder>(std::in_place, system, folder, "undo " + undone);
  } catch (const DocumentError&) {
    return std::nullopt;
  }
}

}  // namespace

bool takeBack(files::FileSystem& system, const OwnFolder& run, const std::vector<Record>& kept,
              const OwnFolder* runs, const std::function<void(const Undone&)>& report) {
  const files::OpenFile journal(system, system.openToAppend(run.at(kJournal)));
  const Source source{system, run};
  Changes changes(system, runs);
  bool whole = true;
  for (auto record = kept.rbegin(); record != kept.rend(); ++record) {
    const auto documents = folderOf(system, *record);
    clearBeside(system, run, *record, documents);
    const Undone undone = undoOne(source, *record, documents, changes);
    if (undone.outcome != Outcome::failed) noteTakenBack(source, journal, *record, documents);
    whole &= undone.outcome != Outcome::failed;
    report(undone);
  }
  return whole;
}

std::vector<Run> runs(files::FileSystem& system, const std::string& folder) {
  std::vector<Run> found;
  try {
    if (!system.exists(folder)) return found;  // nothing was ever changed
    const OwnFolder all = openRuns(system, folder);
    for (const std::string& name : runNames(system, all)) {
      try {
        const auto run = openRunIfThere(system, all, name);
        const auto records = run ? recordsIn(system, *run) : std::nullopt;
        if (!records) continue;
        Run summary = summaryOf(name, *records);
        if (summary.documents == 0) continue;
        summary.going = system.exists(run->at(kLock)) && lockRun(system, *run) == nullptr;
        found.push_back(std::move(summary));
      } catch (const DocumentError&) {
        Run& refused = found.emplace_back();
        refused.name = name;
        refused.refused = true;
      }
    }
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "The journal of earlier runs in \"" + folder + "\" cannot be read (" +
                                         failure.code().message() + ").");
  }
  return found;
}

void undo(files::FileSystem& system, const std::string& folder, const std::string& name,
          const std::function<void(const Undone&)>& report) {
  try {
    if (!isRunName(name) || !system.exists(pathIn(folder, name)))
      throw DocumentError(Problem::io, "There is no run of this name; \"pluvo undo --list\" shows the runs.");
    const OwnFolder all = openRuns(system, folder);
    const OwnFolder run = openRun(system, all, name);
    const auto undoing = runOfUndo(system, folder, name);
    const auto lock = lockRun(system, run);
    if (lock == nullptr)
      throw DocumentError(Problem::locked, "The run is still going on; wait for its end, or interrupt it.");
    const auto records = recordsIn(system, run);
    if (!records)
      throw DocumentError(Problem::io, "The journal of the run, \"" + pathIn(run.path(), kJournal) +
                                           "\", cannot be read, so nothing was changed; check the disk it is "
                                           "on, and who may read it.");
    if (takeBack(system, run, keptOf(*records), &all, report)) {
      removeRun(system, all, name, run);
    } else {
      removeIfPossible(system, run.at(kLock));
    }
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "The journal of the run in \"" + pathIn(folder, name) +
                                         "\" cannot be read or cleared (" + failure.code().message() +
                                         "); the documents are as reported.");
  }
}

}  // namespace pluvo::journal
