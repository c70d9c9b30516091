#include "files/saving.h"

#include "files/lock_files.h"
#include "new_version.h"
#include "paths.h"

#include <cerrno>
#include <system_error>

namespace pluvo::files {

namespace {

void requireReplaceable(FileSystem& system, const std::string& real, const FileStatus& status) {
  if (const auto lock = lockFileOf(system, real)) {
    const std::string_view prefix = lock->starts_with('.') ? ".~lock." : "~$";
    throw DocumentError(
        Problem::locked,
        "The document is open in another program; close it there. If nobody has it open, delete the "
        "file beside it whose name begins with \"" +
            std::string(prefix) + "\" and goes on like the document's.");
  }
  if (status.names > 1)
    throw DocumentError(Problem::readOnly,
                        "The file has " + std::to_string(status.names) +
                            " names (hard links), and the others would keep the old text.",
                        "Save to another folder, or make it a file of its own.");
  if (!system.mayWrite(real))
    throw DocumentError(Problem::readOnly, "The file may not be written.",
                        "Allow it in the file's permissions and attributes, or save to another folder.");
  if (!system.mayWrite(folderOf(real)))
    throw DocumentError(Problem::readOnly,
                        "The folder may not be written, so no new version can be put there.",
                        "Allow it in the folder's permissions, or save to another folder.");
}

void copyOriginal(FileSystem& system, Handle original, TemporaryFile& copy) {
  std::vector<std::uint8_t> buffer(std::size_t{1024} * 1024);
  FileOutput output(system, copy.handle());
  std::uint64_t copied = 0;
  while (const std::size_t count = system.read(original, copied, buffer)) {
    output.write(ByteSpan(buffer).first(count));
    copied += count;
  }
  output.finish();
  copy.takeAfter(original);
  const Stamp modified = system.status(original).stamp;
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
void requireNobodyElseSaves(FileSystem& system, Handle original) {
  try {
    if (system.tryLock(original)) return;
  } catch (const std::system_error&) {
    return;  // a disk without locks
  }
  throw DocumentError(Problem::locked,
                      "Another program is saving it at this moment, so nothing was changed; try again.");
}

/// Until it is closed the document is this program's alone to save, and it is the one that was opened:
/// whoever saved it a moment ago may have put another file there, before or after this one was opened.
void hold(FileSystem& system, Handle document, const std::string& real, const Stamp& opened) {
  requireNobodyElseSaves(system, document);
  requireSameStamp(system.status(document), opened);
  requireSameStamp(system.statusAt(real), opened);
}

/// Puts the version where the original is, which goes or is handed over.
void putInPlace(FileSystem& system, TemporaryFile& version, const std::string& real, const Stamp& opened,
                Keeping* keeping) {
  requireSameStamp(system.statusAt(real), opened);
  if (keeping != nullptr && keeping->wantsFile()) {
    if (version.swap(real)) return keeping->take(version.path());
    keeping->copy();
    requireSameStamp(system.statusAt(real), opened);
  }
  version.replace(real);
}

/// A new version of a document, in the place of the one before.
class Replacing final : public Pending {
 public:
  Replacing(FileSystem& system, std::string real, const FileStatus& before, const NewVersion& version,
            const std::optional<std::string>& backupSuffix)
      : system_(system),
        real_(std::move(real)),
        before_(before),
        original_(system, system.openToRead(real_)),
        replacement_(system, folderOfReal(), version.temporary),
        requireRight_(version.check),
        beforeReplacing_(version.beforeReplacing),
        backupSuffix_(backupSuffix) {
    hold(system, original_.handle(), real_, before.stamp);
    writeVersion(system, replacement_, &original_, version);
  }

  void check() override {
    saving([&] {
      saved_.stamp = checkVersion(system_, replacement_.handle(), requireRight_);
      requireRight_ = nullptr;
      if (backupSuffix_) backUp();
      if (beforeReplacing_)
        keeping_ = beforeReplacing_({real_, original_.handle(), before_, saved_.stamp, replacement_.path()});
    });
  }

  Saved finish() override {
    if (requireRight_) check();
    return saving([&] {
      replacement_.flush();
      if (keeping_) keeping_->wait();
      replacement_.close();
      putInPlace(system_, replacement_, real_, before_.stamp, keeping_.get());
      if (backup_) backup_->keep();
      flushFolder(system_, real_);
      return saved_;
    });
  }

 private:
  std::string folderOfReal() const { return std::string(folderPrefixOf(real_)); }

  void backUp() {
    backup_.emplace(system_, folderOfReal());
    copyOriginal(system_, original_.handle(), *backup_);
    moveToFirstFree(*backup_, real_ + *backupSuffix_);
    backup_->finish();
    saved_.backup = backup_->path();
  }

  FileSystem& system_;
  const std::string real_;
  const FileStatus before_;
  const OpenFile original_;
  TemporaryFile replacement_;
  std::function<void(const Bytes&)> requireRight_;  ///< until it was asked
  const std::function<std::unique_ptr<Keeping>(const Replacement&)> beforeReplacing_;
  const std::optional<std::string> backupSuffix_;
  Saved saved_;
  std::optional<TemporaryFile> backup_;
  std::unique_ptr<Keeping> keeping_;
};

std::unique_ptr<Pending> beginReplacing(FileSystem& system, const std::string& real, const Stamp& opened,
                                        const NewVersion& version,
                                        const std::optional<std::string>& backupSuffix) {
  const FileStatus before = system.statusAt(real);
  requireSameStamp(before, opened);
  requireReplaceable(system, real, before);
  return std::make_unique<Replacing>(system, real, before, version, backupSuffix);
}

}  // namespace

std::optional<DocumentError> obstacleToSaving(FileSystem& system, const std::string& path) {
  try {
    const std::string real = system.resolve(path);
    requireReplaceable(system, real, system.statusAt(real));
    return std::nullopt;
  } catch (const DocumentError& obstacle) {
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
  return saving([&] { return beginReplacing(system, system.resolve(path), opened, version, backupSuffix); });
}

bool swapFile(FileSystem& system, const std::string& path, const Stamp& found, const std::string& other) {
  return saving([&] {
    const std::string real = system.resolve(path);
    const FileStatus before = system.statusAt(real);
    requireSameStamp(before, found);
    requireReplaceable(system, real, before);
    const OpenFile document(system, system.openToRead(real));
    hold(system, document.handle(), real, found);
    try {
      system.exchange(other, real);
    } catch (const std::system_error&) {
      return false;
    }
    // Another program may have put a version there in this very moment.
    const FileStatus swapped = system.statusAt(other);
    if (swapped.stamp != found) system.exchange(other, real);
    requireSameStamp(swapped, found);
    flushFolder(system, real);
    return true;
  });
}

}  // namespace pluvo::files
