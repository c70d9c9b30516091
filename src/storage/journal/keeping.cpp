#include "keeping.h"

#include <future>
#include <system_error>
#include <utility>
#include <vector>

namespace pluvo::journal {

namespace {

/// Permissions without writing, which no replaced document has.
constexpr std::uint32_t kOfCopies = 0400;

void copyBytes(files::FileSystem& system, files::Handle from, files::Handle to) {
  std::vector<std::uint8_t> buffer(std::size_t{1024} * 1024);
  std::uint64_t copied = 0;
  while (const std::size_t count = system.read(from, copied, buffer)) {
    writeAll(system, to, base::ByteSpan(buffer).first(count));
    copied += count;
    system.startWriting(to);
  }
}

/// Flushes that go on together, and the handles they need.
class Flushes {
 public:
  explicit Flushes(files::FileSystem& system) : system_(system) {}

  void addOwn(files::Handle file) {
    files_.push_back(std::make_unique<files::OpenFile>(system_, file));
    flushes_.push_back(system_.begin([&system = system_, file] { system.flush(file); }));
  }
  /// The flush must outlive this.
  void add(files::SharedFlush& flush, files::Handle file, std::uint64_t asked) {
    flushes_.push_back(
        system_.begin([&system = system_, &flush, file, asked] { flush.flush(system, file, asked); }));
  }

  void wait() {
    for (std::future<void>& flush : flushes_) flush.get();
    flushes_.clear();
  }

 private:
  files::FileSystem& system_;
  std::vector<std::unique_ptr<files::OpenFile>> files_;
  std::vector<std::future<void>> flushes_;  // gone before the handles
};

/// An original on its way into the journal.
class Kept final : public files::Keeping {
 public:
  Kept(RunUnderWay& run, const files::Replacement& replacement, std::uint64_t number)
      : run_(run),
        replacement_(replacement),
        number_(number),
        place_(run.run->at(originalName(number))),
        wantsFile_(replacement.before.stamp.device == run.run->device()),
        flushes_(run.system) {
    if (!wantsFile_) makeCopy();
  }
  Kept(const Kept&) = delete;
  Kept& operator=(const Kept&) = delete;
  ~Kept() override {
    if (recorded_ && !replaced_) forgetUnlessReplaced();
  }

  /// The record is written. The run's mutex is held.
  void recorded() {
    asked_ = run_.journalFlush.ask();
    askedForRun_ = run_.runFlush.ask();
    askedForRuns_ = run_.runsFlush.ask();
    needsNames_ = !run_.namesOnDisk;
    isFirst_ = needsNames_ && !run_.namesAsked;
    run_.namesAsked = true;
    recorded_ = true;
  }

  /// The first document's flushes go on beside that of its new version. Later a thread for each would cost
  /// more than waiting.
  void begin() override {
    if (!isFirst_) return;
    flushes_.add(run_.journalFlush, run_.journal->handle(), asked_);
    flushes_.add(run_.runFlush, run_.run->handle(), askedForRun_);
    flushes_.add(run_.runsFlush, run_.runs->handle(), askedForRuns_);
  }

  void wait() override {
    guarded(run_.folder, [&] {
      flushes_.wait();
      files::FileSystem& system = run_.system;
      run_.journalFlush.flush(system, run_.journal->handle(), asked_);
      if (needsNames_ || !wantsFile_) run_.runFlush.flush(system, run_.run->handle(), askedForRun_);
      if (needsNames_) run_.runsFlush.flush(system, run_.runs->handle(), askedForRuns_);
    });
    const std::lock_guard guard(run_.mutex);
    run_.namesOnDisk = true;
  }

  bool wantsFile() const override { return wantsFile_; }

  /// Where that fails, the original stays where its record says it may be.
  void take(const files::Place& original) override {
    files::FileSystem& system = run_.system;
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
    guarded(run_.folder, [&] {
      try {
        makeCopy();
        flushes_.wait();
        run_.runFlush.flush(run_.system, run_.run->handle(), run_.runFlush.ask());
      } catch (const std::system_error&) {
        removeIfPossible(run_.system, place_);
        throw;
      }
    });
  }

  void replaced() override {
    replaced_ = true;
    const std::lock_guard guard(run_.mutex);
    ++run_.replaced;
  }

 private:
  /// Its document is not replaced after all, unless the disk says otherwise.
  void forgetUnlessReplaced() {
    files::FileSystem& system = run_.system;
    try {
      if (system.statusAt(replacement_.path).stamp != replacement_.before.stamp) return;
      const std::lock_guard guard(run_.mutex);
      run_.append({Record::Kind::takenBack, replacement_.path, number_, {}, {}, {}});
      run_.size -= replacement_.before.stamp.size;
      removeIfPossible(system, place_);
    } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): undo finds the document as it was
    }
  }

  /// With the original's time, but permissions that tell it from the document's own file.
  void makeCopy() {
    files::FileSystem& system = run_.system;
    const files::Stamp& before = replacement_.before.stamp;
    const files::Handle copy = system.createNew(place_);
    files::OpenFile guard(system, copy);
    copyBytes(system, replacement_.original, copy);
    system.setPermissions(copy, kOfCopies);
    system.setModified(copy, before.modifiedSeconds, before.modifiedNanoseconds);
    guard.close();
    flushes_.addOwn(system.openToRead(place_));
  }

  RunUnderWay& run_;
  const files::Replacement replacement_;
  const std::uint64_t number_;
  const files::Place place_;
  const bool wantsFile_;
  bool recorded_ = false;
  bool needsNames_ = false;
  bool isFirst_ = false;
  std::uint64_t asked_ = 0;
  std::uint64_t askedForRun_ = 0;
  std::uint64_t askedForRuns_ = 0;
  bool replaced_ = false;
  Flushes flushes_;
};

/// An original without room in the journal, or that the run does not keep.
class Dropped final : public files::Keeping {
 public:
  explicit Dropped(RunUnderWay& run) : run_(run), asked_(run.journalFlush.ask()) {}
  void begin() override {}
  void wait() override {
    guarded(run_.folder, [&] { run_.journalFlush.flush(run_.system, run_.journal->handle(), asked_); });
  }
  bool wantsFile() const override { return false; }
  void take(const files::Place&) override {}
  void copy() override {}
  void replaced() override {
    const std::lock_guard guard(run_.mutex);
    ++run_.replaced;
    if (run_.keepsOriginals) ++run_.notKept;
  }

 private:
  RunUnderWay& run_;
  const std::uint64_t asked_;
};

}  // namespace

std::unique_ptr<files::Keeping> keepOriginal(RunUnderWay& run, const files::Replacement& replacement) {
  const std::uint64_t number = run.numbers++;
  try {
    auto kept = std::make_unique<Kept>(run, replacement, number);
    run.append({Record::Kind::kept, replacement.path, number, replacement.temporary, replacement.before,
                replacement.after});
    kept->recorded();
    run.size += replacement.before.stamp.size;
    return kept;
  } catch (const std::system_error&) {
    // Of a copy that a full disk has no room for, a part would take what room there is.
    removeIfPossible(run.system, run.run->at(originalName(number)));
    throw;
  }
}

std::unique_ptr<files::Keeping> leaveOriginal(RunUnderWay& run, const files::Replacement& replacement) {
  run.append({Record::Kind::notKept, replacement.path, 0, {}, {}, {}});
  return std::make_unique<Dropped>(run);
}

}  // namespace pluvo::journal
