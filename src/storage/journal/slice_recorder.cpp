#include "journal/slice_recorder.h"

#include "run_under_way.h"
#include "slice_folder.h"
#include "slice_locks.h"
#include "slice_progress.h"

#include <unistd.h>

#include <charconv>
#include <ctime>
#include <utility>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

[[noreturn]] void refuse(const std::string& why) { throw DocumentError(Problem::io, why); }

/// Throws where the slice does not belong to the run that has the name already.
void requireSame(const NamedRequest& there, const NamedRequest& begun) {
  const std::string which = "The run \"" + begun.run + "\" ";
  if (there.request != begun.request)
    refuse(which + "is of another request: it was begun as '" + there.command +
           "'. Give the same request and the same options, or another --run-name.");
  if (there.slices != begun.slices)
    refuse(which + "is in " + std::to_string(there.slices) + " slices, and this is one of " +
           std::to_string(begun.slices) + ". Give --slice K/" + std::to_string(there.slices) +
           ", or another --run-name.");
  const bool isSameList = there.list.count == begun.list.count && there.list.names == begun.list.names;
  if (isSameList && there.list.keys != begun.list.keys)
    refuse(which +
           "was begun with the same list of documents, and here its names lead to other paths. Begin every "
           "slice in the same folder, on machines that have the documents at the same paths.");
}

std::string sliceInWords(const NamedRequest& of, std::uint32_t number) {
  return "Slice " + std::to_string(number) + " of " + std::to_string(of.slices) + " of the run \"" + of.run +
         "\"";
}

}  // namespace

SliceRecorder::SliceRecorder(files::FileSystem& system, std::string folder, const SliceToBegin& slice,
                             const std::string& command)
    : Recorder(std::make_unique<RunUnderWay>(system, std::move(folder))) {
  RunUnderWay& run = underWay();
  run.undoName = slice.of.run;
  run.keepsOriginals = slice.keepsOriginals;
  guarded(run.folder, [&] {
    const OwnFolder all = openAllNamed(system, run.folder, Missing::isMade);
    // An undo may remove the folder between two of these calls.
    run.runs = std::make_unique<OwnFolder>(openNamed(system, all, slice.of.run, Missing::isMade));
    run.lockOfNamed = holdNamed(system, *run.runs, files::Hold::shared);
    if (run.lockOfNamed == nullptr)
      throw DocumentError(Problem::locked,
                          "The run \"" + slice.of.run + "\" is being taken back; wait for the end of that.");
    if (!requestIn(system, *run.runs, slice.of.run)) {
      putRequest(system, *run.runs, slice.of);
      system.flush(all.handle());
    }
    if (const auto there = requestIn(system, *run.runs, slice.of.run)) requireSame(*there, slice.of);
    begin(slice, command);
  });
}

SliceRecorder::~SliceRecorder() = default;

void SliceRecorder::begin(const SliceToBegin& slice, const std::string& command) {
  RunUnderWay& run = underWay();
  run.name = sliceName(slice.number, slice.of.slices);
  run.run = std::make_unique<OwnFolder>(openNamed(run.system, *run.runs, run.name, Missing::isMade));
  run.lock = holdSlice(run.system, *run.run, sliceInWords(slice.of, slice.number));
  progress_ = std::make_unique<SliceProgress>(run.system, *run.run);
  run.numbers = progress_->nextNumber();
  removeUnrecorded();
  run.torn = !progress_->isEmpty();
  run.journal.emplace(run.system, run.system.openToAppend(run.run->at(kJournal)));
  const auto process = static_cast<std::uint64_t>(::getpid());
  run.append(lineOf({Record::Kind::command, command, 0, {}, {}, {}}) +
             lineOf({Record::Kind::begun, thisMachine(), process, {}, {}, {}, {}, std::time(nullptr)}));
  findOutOfIntended();
}

/// A program that was killed may have copied an original and not come to its record.
void SliceRecorder::removeUnrecorded() {
  RunUnderWay& run = underWay();
  for (const std::string& name : run.system.names(run.run->at("."))) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error == std::errc() && end == name.data() + name.size() && number >= run.numbers)
      run.system.remove(run.run->at(name));
  }
}

/// Finds out of documents that were being replaced when the slice was killed, whether they were.
void SliceRecorder::findOutOfIntended() {
  RunUnderWay& run = underWay();
  for (SliceProgress::Document& document : progress_->documents()) {
    if (!document.intended) continue;
    if (document.kept)
      clearBeside(run.system, *run.run, *document.kept, folderOf(run.system, *document.kept));
    const Replaced replaced = isReplaced(run.system, *run.run, document);
    if (replaced == Replaced::unknown) continue;
    if (replaced == Replaced::yes) {
      document.outcome = document.intended->more;
      run.append({Record::Kind::result, document.key, 0, {}, {}, {}, document.outcome});
    } else if (document.kept) {
      run.append({Record::Kind::takenBack, document.key, document.kept->number, {}, {}, {}});
      removeIfPossible(run.system, run.run->at(originalName(document.kept->number)));
    }
    document.intended = nullptr;
  }
}

void SliceRecorder::list(const std::vector<SliceDocument>& documents) {
  RunUnderWay& run = underWay();
  std::string lines;
  for (const SliceDocument& each : documents) {
    if (progress_->find(each.key) != nullptr) continue;
    lines += lineOf({Record::Kind::listed, each.key, 0, {}, {}, {}, each.name == each.key ? "" : each.name});
  }
  const std::lock_guard guard(run.mutex);
  if (!lines.empty()) run.append(lines);
}

std::optional<SliceDocument> SliceRecorder::earlier(const std::string& key) const {
  const SliceProgress::Document* const known = progress_->find(key);
  if (known == nullptr) return std::nullopt;
  if (const Record* const intended = known->intended.get(); intended != nullptr)
    return SliceDocument{key, known->name, intended->more, true};
  if (known->outcome.empty()) return std::nullopt;
  return SliceDocument{key, known->name, known->outcome, false};
}

void SliceRecorder::result(const std::string& key, const std::string& outcome) {
  RunUnderWay& run = underWay();
  const std::lock_guard guard(run.mutex);
  run.append({Record::Kind::result, key, 0, {}, {}, {}, outcome});
}

void SliceRecorder::end() {
  RunUnderWay& run = underWay();
  const std::lock_guard guard(run.mutex);
  run.append({Record::Kind::ended, {}, 0, {}, {}, {}, {}, std::time(nullptr)});
  run.system.flush(run.journal->handle());
  run.system.flush(run.run->handle());
  run.system.flush(run.runs->handle());
}

}  // namespace pluvo::journal
