#pragma once

#include "errors/document_error.h"
#include "files/file_system.h"
#include "files/shared_flush.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace pluvo::files {

/// The one way a file is written. A temporary file in the same folder gets the permissions, owner, access
/// lists and extended attributes of the original. It is read back and checked, flushed, and renamed into
/// place, and the folder is flushed. At any moment, a power failure included, there is the old version or the
/// new one, whole.
///
/// When something fails, the original is untouched and the temporary file is gone. A killed program may leave
/// a temporary file while the version is flushed and takes its place. On a disk whose files must have names
/// it may leave one at any moment. Its name is "~pluvo-", sixteen hexadecimal digits and ".tmp". It may be
/// deleted, unless the original was to be kept (Keeping; the journal sees to its own). An owner or group that
/// the user may not give away becomes the user's own, without new rights for others. A changed group has the
/// rights of everybody else. Rights that let a program do more than its user (set-id bits, capabilities) do
/// not pass to a new version.
///
/// A version is later than the original by its time of last change, if only by the disk's smallest step. So
/// size and time tell one from the other.
///
/// Links are followed: their target is replaced, and temporary files and backups lie beside it. From then on
/// all is done by name in the document's folder, which is opened once and must hold the document as it was
/// opened. Where a folder on the way is exchanged, no file elsewhere is made, read or removed.

/// Whether that is the name of a temporary file, which may be deleted.
bool isTemporaryName(std::string_view name);

/// A document at the moment before its new version takes its place.
struct Replacement {
  std::string path;     ///< without links
  Handle original = 0;  ///< open for reading, as long as the Keeping
  FileStatus before;    ///< of the original
  Stamp after;          ///< of the new version, which is written but may not be checked or on disk yet
  /// The new version's name in the document's folder. When the two are swapped, the original has it for a
  /// moment.
  std::string temporary;
};

/// Keeps the original of one replacement.
class Keeping {
 public:
  virtual ~Keeping() = default;
  /// Begins with what wait waits for. Called once, after a flush of the new version that goes on meanwhile
  /// was begun: that one takes the longest.
  virtual void begin() = 0;
  /// Returns when all that has to be on disk before the document is replaced is there. What throws here or in
  /// copy leaves the document as it is.
  virtual void wait() = 0;
  /// Whether the original can still be kept. Its file is swapped with the new version and handed over, or,
  /// where the disk cannot swap, copied before it is replaced.
  virtual bool wantsFile() const = 0;
  /// The new version is in place, and the original lies here, to be taken from there. Throws nothing.
  virtual void take(const Place& original) = 0;
  /// Returns when a copy is on disk.
  virtual void copy() = 0;
  /// The new version is in place. Until then the document may stay as it is. Throws nothing.
  virtual void replaced() {}
};

/// The contents of a new version, and their check.
struct NewVersion {
  std::function<void(base::Output&)> write;
  /// Given the version as read back from the disk. Throws errors::DocumentError where that is not the version
  /// meant.
  std::function<void(const base::Bytes&)> check;
  /// Called when the new version is written, before it takes the place of the original. The original stays if
  /// this throws. Null where nothing is kept. The document may be closed by then.
  std::function<std::unique_ptr<Keeping>(const Replacement&)> beforeReplacing = {};
  /// The owner, the permissions and the time of last change it is to have, where they are not to be the
  /// original's and now.
  std::optional<FileStatus> as = std::nullopt;
  /// Its name meanwhile, in the document's folder; empty where any free name there will do.
  std::string temporary = {};
  /// Of versions that are saved meanwhile; null where there is only this one.
  std::shared_ptr<FolderFlushes> folderFlushes = nullptr;
  /// A small version goes to the disk while it is checked, instead of in Pending::flush(). That is sooner
  /// where no other document is worked on meanwhile. With a backup, and under a new name, it goes there later
  /// all the same.
  bool isFlushedDuringCheck = false;
};

/// The attributes of the original that a new version could not be given.
struct NotKept {
  bool owner = false;
  bool group = false;

  /// "owner", "group", "owner and group", or empty.
  std::string words() const;
};

struct Saved {
  Stamp stamp;         ///< the new version's
  std::string backup;  ///< where the old version is kept; empty without a backup
  NotKept notKept = {};
};

/// A new version that is written and checked; it may still have to be flushed, and to be put in its place.
/// Unless it is put there, nothing of it stays.
class Pending {
 public:
  virtual ~Pending() = default;
  Saved finish() {
    flush();
    putInPlace();
    return settle();
  }

  /// The steps of that, on any thread. Versions that take the last two together share flushes.
  virtual void flush() = 0;
  virtual void putInPlace() = 0;
  /// Returns when the disk has the new name.
  virtual Saved settle() = 0;
};

/// Why the document can be read but not be replaced. locked: it is open in another program. read-only: its
/// permissions, disk or folder forbid it, or it has several names. A rename would leave the other names with
/// the old text.
std::optional<errors::DocumentError> obstacleToSaving(FileSystem& system, const std::string& path);

/// Throws errors::DocumentError changed when the document is not as it was when it was opened.
void requireUnchanged(FileSystem& system, const std::string& path, const Stamp& opened);

/// Replaces the document, which must be as it was when it was opened, else it is errors::DocumentError
/// changed. With a backup suffix the old version is kept under the document's name and the suffix. Where that
/// name is taken, ".2", ".3" … is added.
std::unique_ptr<Pending> beginReplacingFile(FileSystem& system, const std::string& path, const Stamp& opened,
                                            const NewVersion& version,
                                            const std::optional<std::string>& backupSuffix = std::nullopt);
inline Saved replaceFile(FileSystem& system, const std::string& path, const Stamp& opened,
                         const NewVersion& version,
                         const std::optional<std::string>& backupSuffix = std::nullopt) {
  return beginReplacingFile(system, path, opened, version, backupSuffix)->finish();
}

/// Swaps the document, which must be as it was found, with a file that is on disk. False where the system or
/// the disk cannot do that.
bool swapFile(FileSystem& system, const std::string& path, const Stamp& found, const Place& other);

/// Saves a document under another name, which must be free, with the permissions of the original. The
/// original must be as it was when it was opened. With a root, a folder that exists, the path begins with it
/// and a "/". Missing folders below it are made, and no link below it is followed.
std::unique_ptr<Pending> beginCreatingFile(FileSystem& system, const std::string& path,
                                           const std::string& original, const Stamp& opened,
                                           const NewVersion& version, const std::string& root = {});

/// Saves a document under another name, in the place of the file that has it; the document's own file may
/// have changed or gone. The new file has the permissions of the file it replaces, else those of the
/// original, and its owner may write it in any case. Where there is neither it is its owner's alone.
Saved writeElsewhere(FileSystem& system, const std::string& path, const std::string& original,
                     const NewVersion& version);

}  // namespace pluvo::files
