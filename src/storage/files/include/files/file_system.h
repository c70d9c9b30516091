#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace pluvo::files {

/// Tells one state of a file from another without reading it.
struct Stamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  bool operator==(const Stamp&) const = default;
};

enum class FileKind { regular, folder, link, pipe, device, socket };

struct FileStatus {
  FileKind kind = FileKind::regular;
  Stamp stamp;
  std::uint64_t names = 1;        ///< hard links
  std::uint32_t permissions = 0;  ///< the twelve mode bits
  std::uint32_t owner = 0;
  std::uint32_t group = 0;
};

/// An open file or folder, meaningful to the file system that gave it.
using Handle = int;

/// Where a file lies: at a path, through any links, or under a name in an open folder, where no link is
/// followed. Names are bytes, whatever their encoding.
struct Place {
  Place(std::string path) : name(std::move(path)) {}
  Place(const char* path) : name(path) {}
  Place(Handle openFolder, std::string nameThere) : folder(openFolder), name(std::move(nameThere)) {}

  static constexpr Handle kNoFolder = -100;  ///< a path that does not begin with "/" begins where the user is
  Handle folder = kNoFolder;
  std::string name;
};

enum class Hold : std::uint8_t { shared, alone };

/// Every call that the program makes on files goes through here, so that tests can make any one of them fail.
/// A call that fails throws std::system_error with the generic
/// category (an errno value) and has changed nothing.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// The user whose rights the program has.
  virtual std::uint32_t user() = 0;

  virtual FileStatus statusAt(const Place& place) = 0;
  /// Whether the name is taken, be it by a link that leads nowhere. A name that is too long is not.
  virtual bool exists(const Place& place) = 0;
  /// Whether the user may write the file or folder, whose status this is. One whose permissions let no user
  /// write it may not be written, not even by a user whom permissions do not bind.
  virtual bool mayWrite(const Place& place, const FileStatus& status) = 0;
  /// The absolute path without links.
  virtual std::string resolve(const std::string& path) = 0;

  /// Never waits for the other end of a pipe.
  virtual Handle openToRead(const Place& place) = 0;
  /// The same of a file that the user may also write, so that it can be locked.
  virtual Handle openToLock(const Place& place) = 0;
  /// A new empty file that only its owner may read, to be written and read back; the name must be free.
  virtual Handle createNew(const Place& place) = 0;
  /// The same without a name; it goes with its handle unless it is given one. Not every disk can do this.
  virtual Handle createUnnamed(const Place& folder) = 0;
  /// The name must be free.
  virtual void giveName(Handle unnamed, const Place& place) = 0;
  virtual Handle openFolder(const Place& place) = 0;
  /// A file that only its owner may read, made where there is none; writing appends to it. It can
  /// be locked.
  virtual Handle openToAppend(const Place& place) = 0;
  virtual FileStatus status(Handle file) = 0;
  /// Fills the front of the buffer with the bytes from offset on and returns how many; 0 is the end of the
  /// file.
  virtual std::size_t read(Handle file, std::uint64_t offset, std::span<std::uint8_t> buffer) = 0;
  /// The first size bytes, as they are while the file stays as it is.
  virtual base::Bytes map(Handle file, std::size_t size) = 0;
  /// Writes the front of the bytes and returns how much.
  virtual std::size_t write(Handle file, base::ByteSpan bytes) = 0;
  /// Returns when the file's bytes, or the folder's names, are on disk.
  virtual void flush(Handle file) = 0;
  /// Begins with work that waits for the disk; the future waits for its end, and throws what it throws.
  /// Flushes that go on together cost the disk hardly more than one.
  virtual std::future<void> begin(const std::function<void()>& work) {
    return std::async(std::launch::deferred, work);
  }
  /// Has the disk begin with the bytes written so far, so that a later flush finds less to do. Only a hint.
  virtual void startWriting(Handle) {}
  /// The handle is gone even when this throws.
  virtual void close(Handle file) = 0;

  virtual void setOwner(Handle file, std::uint32_t owner, std::uint32_t group) = 0;
  virtual void setPermissions(Handle file, std::uint32_t permissions) = 0;
  /// When the file was last changed.
  virtual void setModified(Handle file, std::int64_t seconds, std::int64_t nanoseconds) = 0;
  /// Access lists and other extended attributes. Those that only the system may set are left out.
  virtual void copyAttributes(Handle from, Handle to) = 0;

  /// Puts the file in the place of whatever has the new name.
  virtual void rename(const Place& from, const Place& to) = 0;
  /// Fails where the new name is taken.
  virtual void renameToFree(const Place& from, const Place& to) = 0;
  /// Swaps the files of two names at once. Not every system or disk can.
  virtual void exchange(const Place& /*one*/, const Place& /*other*/) {
    throw std::system_error(std::make_error_code(std::errc::not_supported), "exchange");
  }
  virtual void remove(const Place& place) = 0;

  /// A folder that only its owner may enter; the folder it lies in must be there.
  virtual void createFolder(const Place& place) = 0;
  /// The names in a folder in byte order, without "." and "..".
  virtual std::vector<std::string> names(const Place& folder) = 0;
  /// The folder must be empty.
  virtual void removeFolder(const Place& place) = 0;
  /// Whether the file, open to be read and written, is now locked here, until it is closed or the program
  /// ends. Another program's lock counts only where that program may write the file, too. Readers of a file
  /// cannot keep it from being saved.
  virtual bool tryLock(Handle file) = 0;
  /// The same of a file that only the user may open: held by one, or by any number of those who share it.
  virtual bool tryHold(Handle file, Hold hold) = 0;
};

/// The machine's own. It has no state and may be used from several threads.
FileSystem& machineFileSystem();

/// Whether both paths lead to one file now: by links, hard links or another spelling. Not where either leads
/// nowhere.
bool isSameFile(FileSystem& system, const std::string& path, const std::string& other);

/// Closes its handle when it goes.
class OpenFile {
 public:
  OpenFile(FileSystem& system, Handle handle) : system_(&system), handle_(handle) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile();

  Handle handle() const { return handle_; }
  /// To be called where a failure to close must be known.
  void close();

 private:
  FileSystem* system_;
  Handle handle_;
};

/// A folder held open: its names stay its own, even where another folder takes its path.
class OpenFolder {
 public:
  OpenFolder(FileSystem& system, const Place& place)
      : folder_(std::make_unique<OpenFile>(system, system.openFolder(place))) {}

  Handle handle() const { return folder_->handle(); }
  Place at(std::string name) const { return {handle(), std::move(name)}; }
  Place itself() const { return at("."); }

 private:
  std::unique_ptr<OpenFile> folder_;
};

}  // namespace pluvo::files
