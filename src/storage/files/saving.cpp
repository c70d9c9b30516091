#include "files/saving.h"

#include "files/lock_files.h"
#include "files/reading.h"
#include "located.h"
#include "new_version.h"

#include <cerrno>
#include <future>
#include <system_error>

namespace pluvo::files {

namespace {

errors::DocumentError lockedBy(const LockFile& lock) {
  const std::string who = lock.owner.empty() ? "a word processor" : lock.owner;
  return {errors::Problem::locked,
          "The file \"" + lock.name + "\" beside the document says that " + who +
              " has it open; close it there. If it is not open anywhere, delete that file."};
}

void requireReplaceable(FileSystem& system, const Located& document, const FileStatus& status) {
  if (const auto lock = lockFileOf(system, document.folder, document.name)) throw lockedBy(*lock);
  if (status.names > 1)
    throw errors::DocumentError(errors::Problem::readOnly,
                                "The file has " + std::to_string(status.names) +
                                    " names (hard links), and the others would keep the old text.",
                                "Save to another folder, or make it a file of its own.");
  if (!system.mayWrite(document.place(), status))
    throw errors::DocumentError(
        errors::Problem::readOnly, "The file may not be written.",
        "Allow it in the file's permissions and attributes, or save to another folder.");
  if (!system.mayWrite(document.folder.itself(), system.status(document.folder.handle())))
    throw errors::DocumentError(errors::Problem::readOnly,
                                "The folder may not be written, so no new version can be put there.",
                                "Allow it in the folder's permissions, or save to another folder.");
}

void copyOriginal(FileSystem& system, Handle original, TemporaryFile& copy) {
  std::vector<std::uint8_t> buffer(std::size_t{1024} * 1024);
  FileOutput output(system, copy.handle());
  std::uint64_t copied = 0;
  while (const std::size_t count = system.read(original, copied, buffer)) {
    output.write(base::ByteSpan(buffer).first(count));
    copied += count;
  }
  output.finish();
  const FileStatus as = system.status(original);
  copy.takeAfter(original, as);
  const Stamp& modified = as.stamp;
  system.setModified(copy.handle(), modified.modifiedSeconds, modified.modifiedNanoseconds);
}

/// Moves to "name", or to "name.2", "name.3" …, whichever is free first.
void moveToFirstFree(TemporaryFile& file, const std::string& name) {
  constexpr int kMostBackups = 10'000;
  for (int number = 1;; ++number) {
    try {
      return file.moveToFree(number == 1 ? name : name + "." + std::to_string(number));
    } catch (const std::system_error& failure) {
      if (failure.code().value() != EEXIST || number == kMostBackups) throw;
    }
  }
}

/// Of two programs that save the same document at the same time, each would find it unchanged up to the
/// moment before it is replaced.
void requireNobodyElseHolds(FileSystem& system, Handle original) {
  try {
    if (system.tryLock(original)) return;
  } catch (const std::system_error&) {
    return;  // a disk without locks
  }
  throw errors::DocumentError(
      errors::Problem::locked,
      "Another program is saving the document at this moment or has it open, so nothing was "
      "changed; close it there, or try again.");
}

FileStatus statusToReplace(FileSystem& system, const Located& document, const Stamp& opened) {
  const FileStatus status = system.statusAt(document.place());
  requireSameStamp(status, opened);
  requireReplaceable(system, document, status);
  return status;
}

/// The document, open to be replaced. Until this is destroyed only this program may save the document. It is
/// also the version that was opened: another program may have put a new one there since.
class Held {
 public:
  Held(FileSystem& system, const Located& document, const Stamp& opened)
      : before_(statusToReplace(system, document, opened)),
        file_(system, system.openToLock(document.place())) {
    requireNobodyElseHolds(system, file_.handle());
    requireSameStamp(system.status(file_.handle()), opened);
    requireSameStamp(system.statusAt(document.place()), opened);
  }

  const FileStatus& before() const { return before_; }
  const OpenFile& file() const { return file_; }

 private:
  const FileStatus before_;
  const OpenFile file_;
};

/// Whether the file at the place is another than the one that was opened.
bool isAnother(FileSystem& system, const Place& place, const Stamp& opened) {
  try {
    return system.statusAt(place).stamp != opened;
  } catch (const std::system_error&) {
    return false;
  }
}

/// Puts the version where the original is, which goes or is handed over.
void replaceOriginal(FileSystem& system, TemporaryFile& version, const Located& document, const Stamp& opened,
                     Keeping* keeping) {
  requireSameStamp(system.statusAt(document.place()), opened);
  if (keeping != nullptr && keeping->wantsFile()) {
    if (version.swap(document.name)) {
      // Another program may have put a version there in this very moment.
      if (isAnother(system, version.place(), opened) && version.swap(document.name)) {
        version.discard();
        throw changedHere();
      }
      return keeping->take(version.place());
    }
    keeping->copy();
    requireSameStamp(system.statusAt(document.place()), opened);
  }
  version.replace(document.name);
}

/// A new version of a document, in the place of the one before.
class Replacing final : public Pending {
 public:
  Replacing(FileSystem& system, const std::string& real, const Stamp& opened, const NewVersion& version,
            const std::optional<std::string>& backupSuffix)
      : system_(system),
        document_(system, real),
        original_(system, document_, opened),
        replacement_(system, document_.folder, version.temporary),
        beforeReplacing_(version.beforeReplacing),
        backupSuffix_(backupSuffix),
        folderFlush_(flushOf(system, document_.folder, version)) {
    saved_.notKept =
        writeVersion(system, replacement_, Original{original_.file().handle(), original_.before()}, version);
    saved_.stamp = system.status(replacement_.handle()).stamp;
    // The check of a large one takes long, and a program killed meanwhile would leave the version and a
    // backup.
    if (version.isFlushedDuringCheck && saved_.stamp.size < kMappedFrom && !backupSuffix_) {
      keepOriginal();
      flushing_ = system.begin([this] { replacement_.flush(); });
      if (keeping_) keeping_->begin();
    }
    if (checkVersion(system, replacement_.handle(), version.check) != saved_.stamp) throw changedHere();
  }

  void flush() override {
    saving([&] {
      if (flushing_.valid()) return flushing_.get();
      keepOriginal();
      if (keeping_) keeping_->begin();
      replacement_.flush();
    });
  }

  void putInPlace() override {
    saving([&] {
      if (keeping_) keeping_->wait();
      replacement_.close();
      replaceOriginal(system_, replacement_, document_, original_.before().stamp, keeping_.get());
      if (keeping_) keeping_->replaced();
      if (backup_) backup_->keep();
      asked_ = folderFlush_->ask();
    });
  }

  Saved settle() override {
    flushFolder(system_, document_.folder, *folderFlush_, asked_);
    return saved_;
  }

 private:
  void keepOriginal() {
    if (backupSuffix_) backUp();
    if (beforeReplacing_)
      keeping_ = beforeReplacing_(
          {document_.path, original_.file().handle(), original_.before(), saved_.stamp, replacement_.name()});
  }

  void backUp() {
    backup_.emplace(system_, document_.folder);
    copyOriginal(system_, original_.file().handle(), *backup_);
    moveToFirstFree(*backup_, document_.name + *backupSuffix_);
    backup_->finish();
    saved_.backup = document_.pathBeside(backup_->name());
  }

  FileSystem& system_;
  const Located document_;
  const Held original_;
  std::unique_ptr<Keeping> keeping_;  ///< sees what becomes of the document, so it goes after the version
  TemporaryFile replacement_;
  const std::function<std::unique_ptr<Keeping>(const Replacement&)> beforeReplacing_;
  const std::optional<std::string> backupSuffix_;
  const std::shared_ptr<SharedFlush> folderFlush_;
  std::uint64_t asked_ = 0;
  Saved saved_;
  std::optional<TemporaryFile> backup_;
  std::future<void> flushing_;  ///< the last member: it ends before that which it uses goes
};

}  // namespace

std::string NotKept::words() const {
  if (owner && group) return "owner and group";
  return owner ? "owner" : group ? "group" : "";
}

std::optional<errors::DocumentError> obstacleToSaving(FileSystem& system, const std::string& path) {
  try {
    const Located document(system, system.resolve(path));
    requireReplaceable(system, document, system.statusAt(document.place()));
    return std::nullopt;
  } catch (const errors::DocumentError& obstacle) {
    return obstacle;
  } catch (const std::system_error& failure) {
    return savingFailed(failure);
  }
}

void requireUnchanged(FileSystem& system, const std::string& path, const Stamp& opened) {
  saving([&] { requireSameStamp(system.statusAt(path), opened); });
}

std::unique_ptr<Pending> beginReplacingFile(FileSystem& system, const std::string& path, const Stamp& opened,
                                            const NewVersion& version,
                                            const std::optional<std::string>& backupSuffix) {
  return saving([&] {
    return std::make_unique<Replacing>(system, system.resolve(path), opened, version, backupSuffix);
  });
}

bool swapFile(FileSystem& system, const std::string& path, const Stamp& found, const Place& other) {
  return saving([&] {
    const Located document(system, system.resolve(path));
    const Held held(system, document, found);
    try {
      system.exchange(other, document.place());
    } catch (const std::system_error&) {
      return false;
    }
    // Another program may have put a version there in this very moment.
    const FileStatus swapped = system.statusAt(other);
    if (swapped.stamp != found) system.exchange(other, document.place());
    requireSameStamp(swapped, found);
    SharedFlush alone;
    flushFolder(system, document.folder, alone, alone.ask());
    return true;
  });
}

}  // namespace pluvo::files
