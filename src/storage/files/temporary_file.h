#pragma once

#include "files/saving.h"

#include <string>

namespace pluvo::files {

/// A new file in the folder of the one it is to become; gone with this object unless it was renamed. Until it
/// is flushed it has no name where the disk can do that, so that a program killed before leaves nothing
/// behind. The folder must stay open.
class TemporaryFile {
 public:
  /// Under the name, if one is given, which must be free.
  TemporaryFile(FileSystem& system, const OpenFolder& folder, const std::string& name = {});
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Its stamp from the time it is flushed, renamed or not.
  const std::string& name() const { return name_; }
  Place place() const { return folder_.at(name_); }
  Handle handle() const { return file_.handle(); }

  /// Gives it the attributes of another file, and the owner and permissions as far as it may have them.
  NotKept takeAfter(Handle original, const FileStatus& as);
  /// The bytes are on disk, under the name it then has.
  void flush();
  void close() { file_.close(); }
  /// Both.
  void finish();

  /// Takes the place of whatever has the name, and stays.
  void replace(const std::string& name);
  /// The same, but the file that had the name is at place() then, and stays too. False where the disk cannot
  /// do it.
  bool swap(const std::string& name);
  /// Takes a name; it still goes with this object unless it is kept. Throws std::system_error with EEXIST
  /// where the name is taken.
  void moveToFree(const std::string& name);
  void keep() { temporary_ = false; }
  void discard() { temporary_ = true; }

 private:
  struct Created {
    std::string name;
    Handle handle;
    bool named;
  };
  TemporaryFile(FileSystem& system, const OpenFolder& folder, Created created);
  static Created createIn(FileSystem& system, const OpenFolder& folder, const std::string& name);

  FileSystem& system_;
  const OpenFolder& folder_;
  std::string name_;
  OpenFile file_;
  bool named_;
  bool temporary_ = true;
};

/// Gathers small writes and passes large ones on. Of a large file the disk writes one part while the next is
/// made.
class FileOutput final : public base::Output {
 public:
  FileOutput(FileSystem& system, Handle file) : system_(system), file_(file) {}
  void write(base::ByteSpan bytes) override;
  /// To be called after the last write.
  void finish();
  /// Has the disk begin with a file that is worth it.
  void startWriting();

 private:
  void writeThrough(base::ByteSpan bytes);

  FileSystem& system_;
  Handle file_;
  std::vector<std::uint8_t> gathered_;
  std::size_t unstarted_ = 0;  ///< bytes that the disk was not asked to begin with
};

}  // namespace pluvo::files
