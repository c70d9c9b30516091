#include "journal/named_runs.h"
#include "slice_folder.h"

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

Recorder::Recorder(files::FileSystem& system, std::string folder, const SliceToBegin& slice,
                   std::string command)
    : system_(system),
      folder_(std::move(folder)),
      limit_(kDefaultLimit),
      undoName_(slice.of.run),
      keepsOriginals_(slice.keepsOriginals) {
  try {
    const OwnFolder all = openAllNamed(system_, folder_, Missing::isMade);
    // An undo may remove the folder between two of these calls.
    runs_ = std::make_unique<OwnFolder>(openNamed(system_, all, slice.of.run, Missing::isMade));
    shared_ = holdNamed(system_, *runs_, files::Hold::shared);
    if (shared_ == nullptr)
      throw DocumentError(Problem::locked,
                          "The run \"" + slice.of.run + "\" is being taken back; wait for the end of that.");
    if (!requestIn(system_, *runs_, slice.of.run)) {
      putRequest(system_, *runs_, slice.of);
      system_.flush(all.handle());
    }
    if (const auto there = requestIn(system_, *runs_, slice.of.run)) requireSame(*there, slice.of);
    beginSlice(slice, command);
  } catch (const std::system_error& failure) {
    throw journalFailed(failure, folder_);
  }
}

void Recorder::beginSlice(const SliceToBegin& slice, const std::string& command) {
  name_ = sliceName(slice.number, slice.of.slices);
  run_ = std::make_unique<OwnFolder>(openNamed(system_, *runs_, name_, Missing::isMade));
  lock_ = holdSlice(system_, *run_, sliceInWords(slice.of, slice.number));
  progress_ = std::make_unique<SliceProgress>(system_, *run_);
  numbers_ = progress_->nextNumber();
  removeUnrecorded();
  torn_ = !progress_->isEmpty();
  journal_.emplace(system_, system_.openToAppend(run_->at(kJournal)));
  append(lineOf({Record::Kind::command, command, 0, {}, {}, {}}) +
         lineOf({Record::Kind::begun,
                 thisMachine(),
                 static_cast<std::uint64_t>(::getpid()),
                 {},
                 {},
                 {},
                 {},
                 std::time(nullptr)}));
  settle();
}

/// A program that was killed may have copied an original and not come to its record.
void Recorder::removeUnrecorded() {
  for (const std::string& name : system_.names(run_->at("."))) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error == std::errc() && end == name.data() + name.size() && number >= numbers_)
      system_.remove(run_->at(name));
  }
}

/// Finds out of documents that were being replaced when the slice was killed, whether they were.
void Recorder::settle() {
  for (SliceProgress::Document& document : progress_->documents()) {
    if (!document.intended) continue;
    if (document.kept) clearBeside(system_, *run_, *document.kept, folderOf(system_, *document.kept));
    const Replaced replaced = isReplaced(system_, *run_, document);
    if (replaced == Replaced::unknown) continue;
    if (replaced == Replaced::yes) {
      document.outcome = document.intended->more;
      append({Record::Kind::result, document.key, 0, {}, {}, {}, document.outcome});
    } else if (document.kept) {
      append({Record::Kind::takenBack, document.key, document.kept->number, {}, {}, {}});
      removeIfPossible(system_, run_->at(originalName(document.kept->number)));
    }
    document.intended = nullptr;
  }
}

void Recorder::list(const std::vector<SliceDocument>& documents) {
  std::string lines;
  for (const SliceDocument& each : documents) {
    if (progress_->find(each.key) != nullptr) continue;
    lines += lineOf({Record::Kind::listed, each.key, 0, {}, {}, {}, each.name == each.key ? "" : each.name});
  }
  const std::lock_guard guard(mutex_);
  if (!lines.empty()) append(lines);
}

std::optional<SliceDocument> Recorder::earlier(const std::string& key) const {
  const SliceProgress::Document* const known = progress_->find(key);
  if (known == nullptr || (known->outcome.empty() && !known->intended)) return std::nullopt;
  const bool isUnclear = known->intended != nullptr;
  return SliceDocument{key, known->name, isUnclear ? known->intended->more : known->outcome, isUnclear};
}

void Recorder::intend(const std::string& key, const std::string& outcome) {
  const std::lock_guard guard(mutex_);
  append({Record::Kind::intended, key, 0, {}, {}, {}, outcome});
}

void Recorder::result(const std::string& key, const std::string& outcome) {
  const std::lock_guard guard(mutex_);
  append({Record::Kind::result, key, 0, {}, {}, {}, outcome});
}

void Recorder::end() {
  const std::lock_guard guard(mutex_);
  append({Record::Kind::ended, {}, 0, {}, {}, {}, {}, std::time(nullptr)});
  system_.flush(journal_->handle());
  system_.flush(run_->handle());
  system_.flush(runs_->handle());
}

}  // namespace pluvo::journal
