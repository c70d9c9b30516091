#include "files/saving.h"

#include "files/lock_files.h"
#include "files/reading.h"
#include "paths.h"
#include "temporary_file.h"
#include "wording.h"

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
    throw DocumentError(
        Problem::readOnly,
        "The file has " + std::to_string(status.names) +
            " names (hard links), and the others would keep the old text; save to another folder, or "
            "make it a file of its own.");
  if (!system.mayWrite(real))
    throw DocumentError(
        Problem::readOnly,
        "The file may not be written; allow it in the file's permissions, or save to another folder.");
  if (!system.mayWrite(folderOf(real)))
    throw DocumentError(
        Problem::readOnly,
        "The folder may not be written, so no new version can be put there; allow it in the folder's "
        "permissions, or save to another folder.");
}

void requireSameStamp(const FileStatus& now, const Stamp& opened) {
  if (now.stamp != opened)
    throw DocumentError(Problem::changed,
                        "Another program changed the file while it was open here; it was left as it is.",
                        "Run this again.");
}

/// Writes the version and reads it back; the stamp is the finished file's. It need not be on disk yet.
Stamp writeVersion(FileSystem& system, TemporaryFile& file, const OpenFile* original,
                   const NewVersion& version) {
  FileOutput output(system, file.handle());
  version.write(output);
  output.finish();
  if (original != nullptr) file.takeAfter(original->handle());
  if (version.as) system.setPermissions(file.handle(), version.as->permissions);
  // A time that was set stays; of a disk elsewhere the flush might set another.
  const Stamp modified = version.as ? version.as->stamp : system.status(file.handle()).stamp;
  system.setModified(file.handle(), modified.modifiedSeconds, modified.modifiedNanoseconds);
  output.startWriting();
  const FileContent written = readFile(system, file.handle());
  version.check(written.bytes);
  return written.stamp;
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
  copy.finish();
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

/// The version is in its place; what fails now cannot be taken back.
void flushFolder(FileSystem& system, const std::string& file) {
  try {
    const OpenFile folder(system, system.openFolder(folderOf(file)));
    system.flush(folder.handle());
  } catch (const std::system_error& failure) {
    throw DocumentError(Problem::io,
                        "The new version is in place, but the disk did not confirm that it would outlast a "
                        "power failure (" +
                            failure.code().message() + "); check the disk.");
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

/// Calls that fail are told in the user's terms.
template <class Work>
auto saving(Work work) {
  try {
    return work();
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
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
        replacement_(system, folderOfReal(), version.temporary) {
    requireNobodyElseSaves(system, original_.handle());
    // Whoever saved it a moment ago may have put another file here, before or after this one was opened.
    requireSameStamp(system.status(original_.handle()), before.stamp);
    requireSameStamp(system.statusAt(real_), before.stamp);
    saved_.stamp = writeVersion(system, replacement_, &original_, version);
    if (backupSuffix) {
      backup_.emplace(system, folderOfReal());
      copyOriginal(system, original_.handle(), *backup_);
      moveToFirstFree(*backup_, real_ + *backupSuffix);
      saved_.backup = backup_->path();
    }
    if (version.beforeReplacing)
      keeping_ =
          version.beforeReplacing({real_, original_.handle(), before, saved_.stamp, replacement_.path()});
  }

  Saved finish() override {
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

  FileSystem& system_;
  const std::string real_;
  const FileStatus before_;
  const OpenFile original_;
  TemporaryFile replacement_;
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

DocumentError nameTaken() {
  return {Problem::io,
          "There is a file of this name where the new version should go; it was left as it is. Remove it or "
          "choose another folder."};
}

/// A new file under a name that must be free.
class Creating final : public Pending {
 public:
  Creating(FileSystem& system, std::string path, std::string original, const Stamp& opened,
           const NewVersion& version)
      : system_(system),
        path_(std::move(path)),
        original_(std::move(original)),
        opened_(opened),
        pattern_(system, system.openToRead(original_)),
        file_(system, std::string(folderPrefixOf(path_))),
        stamp_(writeVersion(system, file_, &pattern_, version)) {}

  Saved finish() override {
    return saving([&] {
      file_.finish();
      requireSameStamp(system_.statusAt(original_), opened_);
      moveToPath();
      file_.keep();
      flushFolder(system_, path_);
      return Saved{stamp_, {}};
    });
  }

 private:
  void moveToPath() {
    try {
      file_.moveToFree(path_);
    } catch (const std::system_error& failure) {
      if (failure.code().value() == EEXIST) throw nameTaken();
      throw;
    }
  }

  FileSystem& system_;
  const std::string path_;
  const std::string original_;
  const Stamp opened_;
  const OpenFile pattern_;
  TemporaryFile file_;
  const Stamp stamp_;
};

std::optional<OpenFile> openIfThere(FileSystem& system, const std::string& path) {
  try {
    return std::optional<OpenFile>(std::in_place, system, system.openToRead(path));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
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
    requireNobodyElseSaves(system, document.handle());
    requireSameStamp(system.status(document.handle()), found);
    requireSameStamp(system.statusAt(real), found);
    try {
      system.exchange(other, real);
    } catch (const std::system_error&) {
      return false;
    }
    flushFolder(system, real);
    return true;
  });
}

std::unique_ptr<Pending> beginCreatingFile(FileSystem& system, const std::string& path,
                                           const std::string& original, const Stamp& opened,
                                           const NewVersion& version) {
  return saving([&]() -> std::unique_ptr<Pending> {
    if (system.exists(path)) throw nameTaken();
    return std::make_unique<Creating>(system, path, original, opened, version);
  });
}

Saved writeElsewhere(FileSystem& system, const std::string& path, const std::string& original,
                     const NewVersion& version) {
  return saving([&] {
    if (system.exists(path)) {
      const std::string real = system.resolve(path);
      return beginReplacing(system, real, system.statusAt(real).stamp, version, std::nullopt)->finish();
    }
    const std::optional<OpenFile> pattern = openIfThere(system, original);
    TemporaryFile file(system, std::string(folderPrefixOf(path)));
    const Stamp stamp = writeVersion(system, file, pattern ? &*pattern : nullptr, version);
    file.finish();
    file.moveToFree(path);
    file.keep();
    flushFolder(system, path);
    return Saved{stamp, {}};
  });
}

}  // namespace pluvo::files
