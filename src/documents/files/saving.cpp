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

Saved replaceResolved(FileSystem& system, const std::string& real, const Stamp& opened,
                      const NewVersion& version, const std::optional<std::string>& backupSuffix) {
  const FileStatus before = system.statusAt(real);
  requireSameStamp(before, opened);
  requireReplaceable(system, real, before);
  const OpenFile original(system, system.openToRead(real));
  requireNobodyElseSaves(system, original.handle());
  const std::string folder(folderPrefixOf(real));

  TemporaryFile replacement(system, folder);
  Saved saved{writeVersion(system, replacement, &original, version), {}};
  std::optional<TemporaryFile> backup;
  if (backupSuffix) {
    backup.emplace(system, folder);
    copyOriginal(system, original.handle(), *backup);
    moveToFirstFree(*backup, real + *backupSuffix);
    saved.backup = backup->path();
  }
  std::unique_ptr<Keeping> keeping;
  if (version.beforeReplacing)
    keeping = version.beforeReplacing({real, original.handle(), before, saved.stamp, replacement.path()});
  if (version.beforeWaiting) version.beforeWaiting();
  replacement.flush();
  if (keeping) keeping->wait();
  replacement.close();
  putInPlace(system, replacement, real, opened, keeping.get());
  if (backup) backup->keep();
  flushFolder(system, real);
  return saved;
}

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
  try {
    requireSameStamp(system.statusAt(path), opened);
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
}

Saved replaceFile(FileSystem& system, const std::string& path, const Stamp& opened, const NewVersion& version,
                  const std::optional<std::string>& backupSuffix) {
  try {
    return replaceResolved(system, system.resolve(path), opened, version, backupSuffix);
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
}

Saved createFile(FileSystem& system, const std::string& path, const std::string& original,
                 const Stamp& opened, const NewVersion& version) {
  const DocumentError nameTaken(Problem::io,
                                "There is a file of this name where the new version should go; it was left "
                                "as it is. Remove it or choose another folder.");
  try {
    if (system.exists(path)) throw nameTaken;
    const OpenFile pattern(system, system.openToRead(original));
    TemporaryFile file(system, std::string(folderPrefixOf(path)));
    const Stamp stamp = writeVersion(system, file, &pattern, version);
    if (version.beforeWaiting) version.beforeWaiting();
    file.finish();
    requireSameStamp(system.statusAt(original), opened);
    file.moveToFree(path);
    file.keep();
    flushFolder(system, path);
    return {stamp, {}};
  } catch (const std::system_error& failure) {
    if (failure.code().value() == EEXIST) throw nameTaken;
    throw savingFailed(failure);
  }
}

Saved writeElsewhere(FileSystem& system, const std::string& path, const std::string& original,
                     const NewVersion& version) {
  try {
    if (system.exists(path)) {
      const std::string real = system.resolve(path);
      return replaceResolved(system, real, system.statusAt(real).stamp, version, std::nullopt);
    }
    const std::optional<OpenFile> pattern = openIfThere(system, original);
    TemporaryFile file(system, std::string(folderPrefixOf(path)));
    const Stamp stamp = writeVersion(system, file, pattern ? &*pattern : nullptr, version);
    file.finish();
    file.moveToFree(path);
    file.keep();
    flushFolder(system, path);
    return {stamp, {}};
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
}

}  // namespace pluvo::files
