#include "journal/journal.h"
#include "slice_folder.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <future>
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

/// The name of a new run, whose folder it makes: after those of this second, even where an earlier one is
/// gone, and after those of a clock that was ahead of this one.
std::string createRun(files::FileSystem& system, const OwnFolder& runs) {
  const std::vector<std::string> names = runNames(system, runs);
  std::string start = utcNow() + "-";
  if (!names.empty()) start = std::max(start, names.back().substr(0, start.size()));
  unsigned number = 0;
  for (const std::string& name : names) {
    unsigned taken = 0;
    if (name.starts_with(start) &&
        std::from_chars(name.data() + start.size(), name.data() + name.size(), taken).ec == std::errc())
      number = taken + 1;
  }
  for (;; ++number) {
    std::string name = start + std::to_string(number);
    try {
      system.createFolder(runs.at(name));
      return name;
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST) throw;
    }
  }
}

/// Nobody may write, as no document that is replaced has it.
constexpr std::uint32_t kOfCopies = 0400;

void writeAll(files::FileSystem& system, files::Handle file, base::ByteSpan bytes) {
  while (!bytes.empty()) bytes = bytes.subspan(system.write(file, bytes));
}

void copyBytes(files::FileSystem& system, files::Handle from, files::Handle to) {
  std::vector<std::uint8_t> buffer(std::size_t{1024} * 1024);
  std::uint64_t copied = 0;
  while (const std::size_t count = system.read(from, copied, buffer)) {
    writeAll(system, to, base::ByteSpan(buffer).first(count));
    copied += count;
    system.startWriting(to);
  }
}

std::uint64_t sizeOf(const std::vector<Record>& kept) {
  std::uint64_t size = 0;
  for (const Record& record : kept) size += record.before.stamp.size;
  return size;
}

/// Flushes that go on together, and the handles they need.
class Flushes {
 public:
  explicit Flushes(files::FileSystem& system) : system_(system) {}

  void addOwn(files::Handle file) {
    const auto& own = files_.emplace_back(std::make_unique<files::OpenFile>(system_, file));
    add(own->handle());
  }
  void add(files::Handle file) { flushes_.push_back(system_.startFlush(file)); }

  void wait() {
    for (std::future<void>& flush : flushes_) flush.get();
    flushes_.clear();
  }

 private:
  files::FileSystem& system_;
  std::vector<std::unique_ptr<files::OpenFile>> files_;
  std::vector<std::future<void>> flushes_;  // gone before the handles
};

template <class Work>
void guarded(const std::string& folder, Work work) {
  try {
    work();
  } catch (const std::system_error& failure) {
    throw journalFailed(failure, folder);
  }
}

}  // namespace

/// An original on its way into the journal.
class Recorder::Kept final : public files::Keeping {
 public:
  Kept(Recorder& recorder, const files::Replacement& replacement, std::uint64_t number)
      : recorder_(recorder),
        replacement_(replacement),
        number_(number),
        place_(recorder.run_->at(originalName(number))),
        wantsFile_(replacement.before.stamp.device == recorder.run_->device()),
        flushes_(recorder.system_) {
    if (!wantsFile_) makeCopy();
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;
  ~Kept() override {
    if (recorded_ && !replaced_) recorder_.forgetUnlessReplaced(replacement_, number_);
  }

  /// The record is written. The first document's flushes go on beside that of its new version; later a
  /// thread for each would cost more than waiting.
  void begin() {
    first_ = !recorder_.namesOnDisk_;
    if (first_) flushes_.add(recorder_.journal_->handle());
    if (first_) flushes_.add(recorder_.runs_->handle());
    if (first_ || !wantsFile_) flushes_.add(recorder_.run_->handle());
    recorded_ = true;
  }

  void wait() override {
    guarded(recorder_.folder_, [&] {
      if (!first_) recorder_.system_.flush(recorder_.journal_->handle());
      flushes_.wait();
    });
    const std::lock_guard guard(recorder_.mutex_);
    recorder_.namesOnDisk_ = true;
  }

  bool wantsFile() const override { return wantsFile_; }

  /// Where that fails, the original stays where its record says it may be.
  void take(const files::Place& original) override {
    files::FileSystem& system = recorder_.system_;
    try {
      try {
        system.rename(original, place_);
      } catch (const std::system_error&) {  // one disk mounted in two places
        copy();
        system.remove(original);
      }
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): see above
    }
  }

  void copy() override {
    guarded(recorder_.folder_, [&] {
      try {
        makeCopy();
        flushes_.add(recorder_.run_->handle());
        flushes_.wait();
      } catch (const std::system_error&) {
        removeIfPossible(recorder_.system_, place_);
        throw;
      }
    });
  }

  void replaced() override {
    replaced_ = true;
    const std::lock_guard guard(recorder_.mutex_);
    ++recorder_.replaced_;
  }

 private:
  /// With the original's time, but permissions that tell it from the document's own file.
  void makeCopy() {
    files::FileSystem& system = recorder_.system_;
    const files::Stamp& before = replacement_.before.stamp;
    const files::Handle copy = system.createNew(place_);
    files::OpenFile guard(system, copy);
    copyBytes(system, replacement_.original, copy);
    system.setPermissions(copy, kOfCopies);
    system.setModified(copy, before.modifiedSeconds, before.modifiedNanoseconds);
    guard.close();
    flushes_.addOwn(system.openToRead(place_));
  }

  Recorder& recorder_;
  const files::Replacement replacement_;
  const std::uint64_t number_;
  const files::Place place_;
  const bool wantsFile_;
  bool first_ = false;
  bool recorded_ = false;
  bool replaced_ = false;
  Flushes flushes_;
};

/// An original that there is no room for, or that nobody wants.
class Recorder::Dropped final : public files::Keeping {
 public:
  explicit Dropped(Recorder& recorder) : recorder_(recorder), flushes_(recorder.system_) {
    flushes_.add(recorder.journal_->handle());
  }
  void wait() override {
    guarded(recorder_.folder_, [&] { flushes_.wait(); });
  }
  bool wantsFile() const override { return false; }
  void take(const files::Place&) override {}
  void copy() override {}
  void replaced() override {
    const std::lock_guard guard(recorder_.mutex_);
    ++recorder_.replaced_;
    if (recorder_.keepsOriginals_) ++recorder_.notKept_;
  }

 private:
  Recorder& recorder_;
  Flushes flushes_;
};

std::optional<std::string> defaultFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/pluvo/runs";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home != '/') return std::nullopt;
  return std::string(home) + "/.local/state/pluvo/runs";
}

std::string folderBelow(const std::string& folder) {
  std::string path = std::filesystem::absolute(folder).lexically_normal().native();
  while (path.ends_with('/')) path.pop_back();
  return path + "/pluvo/runs";
}

Recorder::Recorder(files::FileSystem& system, std::string folder, std::string command, std::uint64_t limit)
    : system_(system), folder_(std::move(folder)), limit_(limit) {
  try {
    runs_ = std::make_unique<OwnFolder>(openRuns(system_, folder_, Missing::isMade));
    // Until it is locked, another program may take the new folder for one that was left behind.
    do {
      name_ = createRun(system_, *runs_);
      run_ = std::make_unique<OwnFolder>(openRun(system_, *runs_, name_));
      lock_ = lockRun(system_, *run_);
    } while (lock_ == nullptr);
    journal_.emplace(system_, system_.openToAppend(run_->at(kJournal)));
    // Flushed with the first document: without one there is nothing to take back.
    append({Record::Kind::command, std::move(command), 0, {}, {}, {}});
    undoName_ = name_;
  } catch (const std::system_error& failure) {
    throw journalFailed(failure, folder_);
  }
}

Recorder::~Recorder() {
  try {
    if (replaced_ > 0 || progress_) {
      system_.remove(run_->at(kLock));
    } else {
      removeRun(system_, *runs_, name_, *run_);
    }
  } catch (const std::system_error&) {
    // An empty run in the list harms nobody, and one with a lock is looked through once more.
  }
}

std::unique_ptr<files::Keeping> Recorder::keep(const files::Replacement& replacement,
                                               const std::string& outcome) {
  const std::lock_guard guard(mutex_);
  std::unique_ptr<files::Keeping> keeping;
  guarded(folder_, [&] {
    const files::FileStatus& before = replacement.before;
    if (progress_)
      append({Record::Kind::intended, replacement.path, 0, {}, before, replacement.after, outcome});
    if (!keepsOriginals_ || !makeRoom(before.stamp.size)) {
      append({Record::Kind::notKept, replacement.path, 0, {}, {}, {}});
      keeping = std::make_unique<Dropped>(*this);
      return;
    }
    const std::uint64_t number = numbers_++;
    try {
      auto kept = std::make_unique<Kept>(*this, replacement, number);
      append(
          {Record::Kind::kept, replacement.path, number, replacement.temporary, before, replacement.after});
      kept->begin();
      keeping = std::move(kept);
    } catch (const std::system_error&) {
      // Of a copy that a full disk has no room for, a part would take what room there is.
      removeIfPossible(system_, run_->at(originalName(number)));
      throw;
    }
    size_ += before.stamp.size;
  });
  return keeping;
}

/// Its document is not replaced after all, unless the disk says otherwise.
void Recorder::forgetUnlessReplaced(const files::Replacement& replacement, std::uint64_t number) {
  try {
    if (system_.statusAt(replacement.path).stamp != replacement.before.stamp) return;
    const std::lock_guard guard(mutex_);
    append({Record::Kind::takenBack, replacement.path, number, {}, {}, {}});
    size_ -= replacement.before.stamp.size;
    removeIfPossible(system_, run_->at(originalName(number)));
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): undo finds the document as it was
  }
}

/// Of a line that was not written whole nothing is read.
void Recorder::append(const std::string& lines) {
  const std::string whole = (torn_ ? kUnlessWhole : "") + lines;
  torn_ = true;
  writeAll(system_, journal_->handle(), {reinterpret_cast<const std::uint8_t*>(whole.data()), whole.size()});
  torn_ = false;
}

void Recorder::append(const Record& record) { append(lineOf(record)); }

std::string Recorder::name() const {
  const std::lock_guard guard(mutex_);
  return keepsOriginals_ && replaced_ > notKept_ ? undoName_ : std::string();
}

std::uint64_t Recorder::notKept() const {
  const std::lock_guard guard(mutex_);
  return notKept_;
}

/// Whether size more bytes can be kept, be it by forgetting the oldest runs.
bool Recorder::makeRoom(std::uint64_t size) {
  if (progress_) return true;
  if (!others_) weighOthers();
  while (!others_->empty() && size_ + size + othersSize_ > limit_) {
    const Other oldest = others_->front();
    others_->pop_front();
    if (forget(oldest.name, openRun(system_, *runs_, oldest.name))) othersSize_ -= oldest.size;
  }
  return size_ + size + othersSize_ <= limit_;
}

/// False while the run is going on.
bool Recorder::forget(const std::string& name, const OwnFolder& run) {
  const auto lock = lockRun(system_, run);
  if (lock == nullptr) return false;
  const auto records = recordsIn(system_, run);
  if (!records) return false;
  for (const Record& record : keptOf(*records)) clearBeside(system_, run, record, folderOf(system_, record));
  try {
    removeRun(system_, *runs_, name, run);
  } catch (const std::system_error& failure) {
    // A program that has just made the folder came back to it.
    if (failure.code().value() == ENOTEMPTY) return false;
    throw;
  }
  return true;
}

void Recorder::weighOthers() {
  others_.emplace();
  for (const std::string& name : runNames(system_, *runs_)) {
    if (name == name_) continue;
    try {
      const OwnFolder run = openRun(system_, *runs_, name);
      const auto records = recordsIn(system_, run);
      if (!records) continue;
      const std::vector<Record> kept = keptOf(*records);
      clearUp(system_, run, kept);
      // A run that was killed before it replaced anything.
      if (kept.empty() && forget(name, run)) continue;
      const std::uint64_t size = sizeOf(kept);
      others_->push_back({name, size});
      othersSize_ += size;
    } catch (const errors::DocumentError&) {  // NOLINT(bugprone-empty-catch): not this user's, and left alone
    }
  }
}

}  // namespace pluvo::journal
