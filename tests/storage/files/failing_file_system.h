#pragma once

#include "files/file_system.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <limits>
#include <string>
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

 protected:
  virtual void strike() { throw std::system_error(error_, std::generic_category(), "test"); }

 public:
  std::uint32_t user() override { return real_.user(); }
  FileStatus statusAt(const Place& place) override { return count(), real_.statusAt(place); }
  bool exists(const Place& place) override { return count(), real_.exists(place); }
  bool mayWrite(const Place& place, const FileStatus& status) override {
    return count(), real_.mayWrite(place, status);
  }
  std::string resolve(const std::string& path) override { return count(), real_.resolve(path); }
  Handle openToRead(const Place& place) override { return count(), real_.openToRead(place); }
  Handle openToLock(const Place& place) override { return count(), real_.openToLock(place); }
  Handle createNew(const Place& place) override { return count(), real_.createNew(place); }
  Handle createUnnamed(const Place& folder) override { return count(), real_.createUnnamed(folder); }
  void giveName(Handle unnamed, const Place& place) override { count(), real_.giveName(unnamed, place); }
  Handle openFolder(const Place& place) override { return count(), real_.openFolder(place); }
  Handle openToAppend(const Place& place) override { return count(), real_.openToAppend(place); }
  FileStatus status(Handle file) override { return count(), real_.status(file); }
  std::size_t read(Handle file, std::uint64_t offset, std::span<std::uint8_t> buffer) override {
    return count(), real_.read(file, offset, buffer.first(someOf(buffer.size())));
  }
  base::Bytes map(Handle file, std::size_t size) override { return count(), real_.map(file, size); }
  std::size_t write(Handle file, base::ByteSpan bytes) override {
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
  void rename(const Place& from, const Place& to) override { count(), real_.rename(from, to); }
  void renameToFree(const Place& from, const Place& to) override { count(), real_.renameToFree(from, to); }
  void exchange(const Place& one, const Place& other) override { count(), real_.exchange(one, other); }
  void remove(const Place& place) override { count(), real_.remove(place); }
  void createFolder(const Place& place) override { count(), real_.createFolder(place); }
  std::vector<std::string> names(const Place& folder) override { return count(), real_.names(folder); }
  void removeFolder(const Place& place) override { count(), real_.removeFolder(place); }
  bool tryLock(Handle file) override { return count(), real_.tryLock(file); }
  bool tryHold(Handle file, Hold hold) override { return count(), real_.tryHold(file, hold); }

 private:
  void count() {
    const int call = ++calls_;
    if (from_ == From::once ? call == failing_ : call >= failing_) strike();
  }
  static std::size_t someOf(std::size_t size) { return size - size / 3; }

  FileSystem& real_ = machineFileSystem();
  int failing_;
  From from_;
  int error_;
  std::atomic<int> calls_ = 0;
};

/// The machine's file system, with a user who puts a link in the place of a folder right before the n-th
/// call.
class ExchangingFileSystem : public FailingFileSystem {
 public:
  ExchangingFileSystem(int n, std::string folder, std::string target)
      : FailingFileSystem(n), folder_(std::move(folder)), target_(std::move(target)) {}

  static std::string moved(const std::string& folder) { return folder + ".moved"; }
  void putBack() {
    if (!std::filesystem::is_symlink(folder_)) return;
    std::filesystem::remove(folder_);
    if (std::filesystem::exists(moved(folder_))) std::filesystem::rename(moved(folder_), folder_);
  }

 protected:
  void strike() override {
    if (std::filesystem::exists(folder_)) std::filesystem::rename(folder_, moved(folder_));
    std::filesystem::create_directory_symlink(target_, folder_);
  }

 private:
  const std::string folder_;
  const std::string target_;
};

}  // namespace pluvo::files
