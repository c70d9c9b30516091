#pragma once

#include "files/file_system.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>

namespace pluvo::files {

/// The machine's file system, of which the n-th call fails, or every call from the n-th on. Reads and writes
/// do part of what they are asked for.
class FailingFileSystem : public FileSystem {
 public:
  enum class From { once, on };
  static constexpr int kNever = std::numeric_limits<int>::max();

  explicit FailingFileSystem(int failing = kNever, From from = From::once, int error = EIO)
      : failing_(failing), from_(from), error_(error) {}

  int calls() const { return calls_; }

  FileStatus statusAt(const std::string& path) override { return count(), real_.statusAt(path); }
  bool exists(const std::string& path) override { return count(), real_.exists(path); }
  bool mayWrite(const std::string& path) override { return count(), real_.mayWrite(path); }
  std::string resolve(const std::string& path) override { return count(), real_.resolve(path); }
  Handle openToRead(const std::string& path) override { return count(), real_.openToRead(path); }
  Handle createNew(const std::string& path) override { return count(), real_.createNew(path); }
  Handle createUnnamed(const std::string& folder) override { return count(), real_.createUnnamed(folder); }
  void giveName(Handle unnamed, const std::string& path) override { count(), real_.giveName(unnamed, path); }
  Handle openFolder(const std::string& path) override { return count(), real_.openFolder(path); }
  Handle openToAppend(const std::string& path) override { return count(), real_.openToAppend(path); }
  FileStatus status(Handle file) override { return count(), real_.status(file); }
  std::size_t read(Handle file, std::uint64_t offset, std::span<std::uint8_t> buffer) override {
    return count(), real_.read(file, offset, buffer.first(someOf(buffer.size())));
  }
  Bytes map(Handle file, std::size_t size) override { return count(), real_.map(file, size); }
  std::size_t write(Handle file, ByteSpan bytes) override {
    return count(), real_.write(file, bytes.first(someOf(bytes.size())));
  }
  void flush(Handle) override { count(); }  // no power fails in a test
  void close(Handle file) override {
    real_.close(file);
    count();
  }
  void setOwner(Handle file, std::uint32_t owner, std::uint32_t group) override {
    count(), real_.setOwner(file, owner, group);
  }
  void setPermissions(Handle file, std::uint32_t permissions) override {
    count(), real_.setPermissions(file, permissions);
  }
  void setModified(Handle file, std::int64_t seconds, std::int64_t nanoseconds) override {
    count(), real_.setModified(file, seconds, nanoseconds);
  }
  void copyAttributes(Handle from, Handle to) override { count(), real_.copyAttributes(from, to); }
  void rename(const std::string& from, const std::string& to) override { count(), real_.rename(from, to); }
  void renameToFree(const std::string& from, const std::string& to) override {
    count(), real_.renameToFree(from, to);
  }
  void exchange(const std::string& one, const std::string& other) override {
    count(), real_.exchange(one, other);
  }
  void remove(const std::string& path) override { count(), real_.remove(path); }
  void createFolder(const std::string& path) override { count(), real_.createFolder(path); }
  std::vector<std::string> names(const std::string& folder) override { return count(), real_.names(folder); }
  void removeFolder(const std::string& path) override { count(), real_.removeFolder(path); }
  bool tryLock(Handle file) override { return count(), real_.tryLock(file); }

 private:
  void count() {
    ++calls_;
    if (from_ == From::once ? calls_ == failing_ : calls_ >= failing_)
      throw std::system_error(error_, std::generic_category(), "test");
  }
  static std::size_t someOf(std::size_t size) { return size - size / 3; }

  FileSystem& real_ = machineFileSystem();
  int failing_;
  From from_;
  int error_;
  int calls_ = 0;
};

}  // namespace pluvo::files
