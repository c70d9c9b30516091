#pragma once

#include "files/file_system.h"

#include <string>

namespace pluvo::files {

/// A new file beside the one it is to become; gone with this object unless it was renamed. Until it is
/// flushed it has no name where the disk can do that, so that a program killed before leaves nothing behind.
class TemporaryFile {
 public:
  /// Under the path, if one is given, which must be free.
  TemporaryFile(FileSystem& system, const std::string& folderPrefix, const std::string& path = {});
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Where it lies from the time it is flushed, renamed or not.
  const std::string& path() const { return path_; }
  Handle handle() const { return file_.handle(); }

  /// Gives it the owner, permissions and attributes of another file.
  void takeAfter(Handle original);
  /// The bytes are on disk, under the name it then has.
  void flush();
  void close() { file_.close(); }
  /// Both.
  void finish();

  /// Takes the place of whatever has the name, and stays.
  void replace(const std::string& path);
  /// The same, but what had the name is at path() then, and stays too. False where the disk cannot do it.
  bool swap(const std::string& path);
  /// Takes a name; it still goes with this object unless it is kept. Throws std::system_error with EEXIST
  /// where the name is taken.
  void moveToFree(const std::string& path);
  void keep() { temporary_ = false; }

 private:
  struct Created {
    std::string path;
    Handle handle;
    bool named;
  };
  TemporaryFile(FileSystem& system, Created created);
  static Created createBeside(FileSystem& system, const std::string& folderPrefix, const std::string& path);

  FileSystem& system_;
  std::string path_;
  OpenFile file_;
  bool named_;
  bool temporary_ = true;
};

/// Gathers small writes and passes large ones on. Of a large file the disk writes one part while the next is
/// made.
class FileOutput final : public Output {
 public:
  FileOutput(FileSystem& system, Handle file) : system_(system), file_(file) {}
  void write(ByteSpan bytes) override;
  /// To be called behind the last write.
  void finish();
  /// Has the disk begin with a file that is worth it.
  void startWriting();

 private:
  void writeThrough(ByteSpan bytes);

  FileSystem& system_;
  Handle file_;
  std::vector<std::uint8_t> gathered_;
  std::size_t unstarted_ = 0;  ///< bytes that the disk was not asked to begin with
};

}  // namespace pluvo::files
