#include "journal/named_runs.h"

#include "slice_folder.h"
#include "slice_locks.h"
#include "slice_progress.h"
#include "taking_back.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace pluvo::journal {

namespace {

using errors::DocumentError;
using errors::Problem;

template <class Work>
auto guarded(const std::string& path, Work work) {
  try {
    return work();
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io, "The journal of the run in \"" + path +
                                         "\" cannot be read or cleared (" + failure.code().message() + ").");
  }
}

std::vector<Record> originalsIn(files::FileSystem& system, const OwnFolder& slice) {
  std::vector<Record> records;
  forEachRecordIn(system, slice, [&](Record record) {
    if (record.kind == Record::Kind::kept || record.kind == Record::Kind::takenBack)
      records.push_back(std::move(record));
  });
  return keptOf(records);
}

}  // namespace

bool isNameForRun(std::string_view name) {
  constexpr std::size_t kLongest = 100;
  const auto isPlain = [](unsigned char c) { return c < 0x80 && std::isalnum(c) != 0; };
  if (name.empty() || name.size() > kLongest || !isPlain(static_cast<unsigned char>(name.front())))
    return false;
  return !isRunName(name) && std::ranges::all_of(name, [&](char c) {
    return isPlain(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '_';
  });
}

std::vector<std::string> namedRuns(files::FileSystem& system, const std::string& folder) {
  const std::string named = folder.substr(0, folder.rfind('/')) + "/named";
  return guarded(named, [&] {
    std::vector<std::string> names;
    if (!system.exists(named)) return names;
    const OwnFolder all = openAllNamed(system, folder);
    names = system.names(all.at("."));
    std::erase_if(names, [](const std::string& name) { return !isNameForRun(name); });
    return names;
  });
}

NamedRun::NamedRun(files::FileSystem& system, const std::string& folder, const std::string& name)
    : system_(system), runs_(folder) {
  const std::vector<std::string> names = namedRuns(system, folder);
  const DocumentError none(Problem::io, "There is no run \"" + name +
                                            "\" in the journal; \"pluvo undo --list\" shows the runs. Where "
                                            "it was made with --journal-dir or another XDG_STATE_HOME, give "
                                            "that here, too.");
  if (std::ranges::find(names, name) == names.end()) throw none;
  guarded(name, [&] {
    const OwnFolder all = openAllNamed(system, folder);
    folder_ = std::make_unique<OwnFolder>(openNamed(system, all, name));
    auto request = requestIn(system, *folder_, name);
    if (!request) throw none;
    request_ = *std::move(request);
  });
}

NamedRun::~NamedRun() = default;

SliceState NamedRun::slice(std::uint32_t number) const {
  SliceState state;
  state.number = number;
  return guarded(folder_->path(), [&] {
    const std::string name = sliceName(number, request_.slices);
    if (!system_.exists(folder_->at(name))) return state;
    const OwnFolder slice = openNamed(system_, *folder_, name);
    // Asked before, so that a slice that ends meanwhile is not taken for one that was broken off.
    const bool going = isGoing(system_, slice);
    const SliceProgress progress(system_, slice);
    if (progress.isEmpty() && !going) return state;
    using Stage = SliceState::Stage;
    state.stage = going ? Stage::going : progress.isEnded() ? Stage::ended : Stage::brokenOff;
    state.attempts = progress.attempts();
    for (const SliceProgress::Document& each : progress.documents()) {
      SliceDocument& document =
          state.documents.emplace_back(SliceDocument{each.key, each.name, each.outcome});
      if (!each.intended) continue;
      const Replaced replaced = isReplaced(system_, slice, each);
      if (replaced == Replaced::yes) document.outcome = each.intended->more;
      document.isUnclear = replaced == Replaced::unknown && !going;
      if (document.isUnclear) document.outcome = each.intended->more;
    }
    for (const Record& record : originalsIn(system_, slice)) {
      ++state.kept;
      state.bytes += record.before.stamp.size;
    }
    forEachRecordIn(system_, slice, [&](const Record& record) {
      if (record.kind == Record::Kind::notKept) ++state.notKept;
    });
    return state;
  });
}

/// A slice that was begun, held so that it is not going on.
class NamedRun::Held {
 public:
  Held(files::FileSystem& system, const OwnFolder& run, std::uint32_t slices, std::uint32_t number)
      : system_(system),
        name_(sliceName(number, slices)),
        folder_(openNamed(system, run, name_)),
        lock_(holdSlice(system, folder_,
                        "Slice " + std::to_string(number) + " of " + std::to_string(slices))) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  /// Where the folder stays, the slice may go on.
  ~Held() { removeIfPossible(system_, folder_.at(kLock)); }

  const std::string& name() const { return name_; }
  const OwnFolder& folder() const { return folder_; }

 private:
  files::FileSystem& system_;
  const std::string name_;
  const OwnFolder folder_;
  const std::unique_ptr<files::OpenFile> lock_;
};

void NamedRun::forEachBegun(const std::function<void(const Held&)>& visit) const {
  // Most of the time goes by waiting for the disk.
  constexpr unsigned kAtOnce = 8;
  std::atomic<std::uint32_t> next = 1;
  std::mutex mutex;
  std::exception_ptr failure;
  const auto work = [&] {
    try {
      for (std::uint32_t number = 0; (number = next++) <= request_.slices;)
        if (system_.exists(folder_->at(sliceName(number, request_.slices))))
          visit(Held(system_, *folder_, request_.slices, number));
    } catch (...) {
      const std::lock_guard lock(mutex);
      if (!failure) failure = std::current_exception();
      next = request_.slices + 1;
    }
  };
  std::vector<std::thread> others;
  try {
    for (unsigned i = 1; i < std::min(kAtOnce, request_.slices); ++i) others.emplace_back(work);
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer threads do the same
  }
  work();
  for (std::thread& other : others) other.join();
  if (failure) std::rethrow_exception(failure);
}

std::unique_ptr<files::OpenFile> NamedRun::holdAlone() const {
  auto lock = holdNamed(system_, *folder_, files::Hold::alone);
  forEachBegun([](const Held&) {});  // tells which slice is going on
  if (lock) return lock;
  throw DocumentError(Problem::locked, "The run \"" + request_.run +
                                           "\" is going on, or another program takes it back at this moment; "
                                           "wait for the end of that.");
}

void NamedRun::takeBack(const std::function<void(const Undone&)>& report) {
  guarded(folder_->path(), [&] {
    const auto lock = holdAlone();
    std::unique_ptr<OwnFolder> runs;
    if (system_.exists(runs_)) runs = std::make_unique<OwnFolder>(openRuns(system_, runs_));
    std::mutex mutex;
    std::atomic<bool> whole = true;
    // No document is in two slices.
    forEachBegun([&](const Held& slice) {
      const auto told = [&](const Undone& undone) {
        const std::lock_guard guard(mutex);
        report(undone);
      };
      const bool sliceWhole =
          journal::takeBack(system_, slice.folder(), originalsIn(system_, slice.folder()), runs.get(), told);
      if (sliceWhole) remove(slice);
      if (!sliceWhole) whole = false;
    });
    if (whole) removeIfEmpty();
  });
}

void NamedRun::forget() {
  guarded(folder_->path(), [&] {
    const auto lock = holdAlone();
    forEachBegun([&](const Held& slice) { remove(slice); });
    removeIfEmpty();
  });
}

/// On a file server a folder may keep the name of a lock that is still open; that folder is empty.
void NamedRun::remove(const Held& slice) const {
  try {
    removeRun(system_, *folder_, slice.name(), slice.folder());
  } catch (const std::system_error& failure) {
    if (failure.code() != std::errc::directory_not_empty) throw;
  }
}

void NamedRun::removeIfEmpty() const {
  for (const std::string& name : system_.names(folder_->at(".")))
    if (name.starts_with("request") || name == kLock) system_.remove(folder_->at(name));
  try {
    system_.removeFolder(openAllNamed(system_, runs_).at(request_.run));
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): an empty folder does no harm
  }
}

}  // namespace pluvo::journal
