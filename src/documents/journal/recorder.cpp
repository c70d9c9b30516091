#include "journal/journal.h"
#include "run_folder.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <system_error>
#include <utility>

namespace pluvo::journal {

namespace {

std::string utcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts = {};
  gmtime_r(&now, &parts);
  std::array<char, 32> text = {};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &parts)};
}

/// The folder of a new run: the first free number among those of this second.
std::string createRun(files::FileSystem& system, const std::string& folder) {
  const std::string start = folder + "/" + utcNow() + "-";
  for (int number = 0;; ++number) {
    std::string run = start + std::to_string(number);
    if (system.exists(run)) continue;
    try {
      system.createFolder(run);
      return run;
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST) throw;
    }
  }
}

void writeAll(files::FileSystem& system, files::Handle file, files::ByteSpan bytes) {
  while (!bytes.empty()) bytes = bytes.subspan(system.write(file, bytes));
}

void append(files::FileSystem& system, files::Handle journal, const Record& record) {
  const std::string line = lineOf(record);
  writeAll(system, journal, {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
}

constexpr std::size_t kCopyBuffer = std::size_t{1024} * 1024;

void copyBytes(files::FileSystem& system, files::Handle from, files::Handle to) {
  std::vector<std::uint8_t> buffer(kCopyBuffer);
  while (const std::size_t count = system.read(from, buffer))
    writeAll(system, to, files::ByteSpan(buffer).first(count));
}

std::uint64_t sizeOf(const std::vector<Record>& records) {
  std::uint64_t size = 0;
  for (const Record& record : records) size += record.before.stamp.size;
  return size;
}

}  // namespace

std::optional<std::string> defaultFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/pluvo/runs";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return std::nullopt;
  return std::string(home) + "/.local/state/pluvo/runs";
}

Recorder::Recorder(files::FileSystem& system, std::string folder, std::string command, std::uint64_t limit)
    : system_(system), folder_(std::move(folder)), limit_(limit) {
  try {
    makeFolders(system_, folder_);
    // Until it is locked, another program may take the new folder for one that was left behind.
    do {
      run_ = createRun(system_, folder_);
      lock_ = lockRun(system_, run_);
    } while (lock_ == nullptr);
    journal_.emplace(system_, system_.openToAppend(journalIn(run_)));
    // Flushed with the first document: without one there is nothing to take back.
    append(system_, journal_->handle(), {Record::Kind::command, std::move(command), 0, {}, {}});
  } catch (const std::system_error& failure) {
    throw journalFailed(failure);
  }
}

Recorder::~Recorder() {
  if (kept_ + notKept_ > 0) return;
  try {
    removeRun(system_, run_);
  } catch (const std::system_error&) {
    // An empty run in the list harms nobody.
  }
}

void Recorder::keep(const files::Replacement& replacement) {
  const std::lock_guard guard(mutex_);
  try {
    const std::uint64_t size = replacement.before.stamp.size;
    if (!makeRoom(size)) {
      append(system_, journal_->handle(), {Record::Kind::notKept, replacement.path, 0, {}, {}});
      system_.flush(journal_->handle());
      ++notKept_;
      return;
    }
    files::OpenFile copy(system_, system_.createNew(originalIn(run_, kept_)));
    copyBytes(system_, replacement.original, copy.handle());
    system_.flush(copy.handle());
    copy.close();
    flushNames(system_, run_);
    if (kept_ == 0) flushNames(system_, folder_);
    append(system_, journal_->handle(),
           {Record::Kind::kept, replacement.path, kept_, replacement.before, replacement.after});
    system_.flush(journal_->handle());
    ++kept_;
    size_ += size;
  } catch (const std::system_error& failure) {
    throw journalFailed(failure);
  }
}

std::uint64_t Recorder::notKept() const {
  const std::lock_guard guard(mutex_);
  return notKept_;
}

/// Whether size more bytes can be kept, be it by forgetting the oldest runs.
bool Recorder::makeRoom(std::uint64_t size) {
  if (!others_) weighOthers();
  while (!others_->empty() && size_ + size + othersSize_ > limit_) {
    const Other oldest = others_->front();
    others_->pop_front();
    if (forget(oldest.run)) othersSize_ -= oldest.size;
  }
  return size_ + size + othersSize_ <= limit_;
}

/// False while the run is going on.
bool Recorder::forget(const std::string& run) {
  const auto lock = lockRun(system_, run);
  if (lock == nullptr) return false;
  removeRun(system_, run);
  return true;
}

void Recorder::weighOthers() {
  others_.emplace();
  for (const std::string& name : runNames(system_, folder_)) {
    const std::string run = folder_ + "/" + name;
    if (run == run_) continue;
    const std::uint64_t size = sizeOf(recordsIn(system_, run));
    // A run that was killed before it replaced anything.
    if (size == 0 && forget(run)) continue;
    others_->push_back({run, size});
    othersSize_ += size;
  }
}

}  // namespace pluvo::journal
