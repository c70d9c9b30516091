#include "files/file_system.h"
#include "mapping.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

namespace pluvo::files {

namespace {

[[noreturn]] void fail(const char* call) { throw std::system_error(errno, std::generic_category(), call); }

/// Makes the call again for as long as a signal interrupts it.
template <class Call>
auto persist(const char* name, Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0) return result;
    if (errno != EINTR) fail(name);
  }
}

FileKind kindOf(mode_t mode) {
  if (S_ISREG(mode)) return FileKind::regular;
  if (S_ISDIR(mode)) return FileKind::folder;
  if (S_ISFIFO(mode)) return FileKind::pipe;
  if (S_ISSOCK(mode)) return FileKind::socket;
  return FileKind::device;
}

FileStatus statusOf(const struct stat& found) {
  constexpr mode_t kPermissionBits = 07777;
  return {kindOf(found.st_mode),
          {found.st_dev, found.st_ino, static_cast<std::uint64_t>(found.st_size), found.st_mtim.tv_sec,
           found.st_mtim.tv_nsec},
          found.st_nlink,
          found.st_mode & kPermissionBits,
          found.st_uid,
          found.st_gid};
}

/// Those that a user may set are part of the file and must come along; the rest belongs to the system.
bool mustBeKept(std::string_view attribute) {
  return attribute.starts_with("user.") || attribute == "system.posix_acl_access";
}

/// Where a file without a name can be reached, for as long as it is open.
std::string pathOf(Handle unnamed) { return "/proc/self/fd/" + std::to_string(unnamed); }

std::vector<std::string> attributeNames(Handle file) {
  if (flistxattr(file, nullptr, 0) <= 0) return {};
  std::vector<char> list(std::size_t{64} * 1024);  // the most that Linux hands out
  const ssize_t length = flistxattr(file, list.data(), list.size());
  std::vector<std::string> names;
  for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(names.back().size()) + 1)
    names.emplace_back(list.data() + at);
  return names;
}

class MachineFileSystem final : public FileSystem {
 public:
  FileStatus statusAt(const std::string& path) override {
    struct stat found = {};
    if (stat(path.c_str(), &found) != 0) fail("stat");
    return statusOf(found);
  }

  bool exists(const std::string& path) override {
    struct stat found = {};
    if (lstat(path.c_str(), &found) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR) return false;
    fail("lstat");
  }

  bool mayWrite(const std::string& path) override {
    constexpr std::uint32_t kWriteBits = 0222;
    if ((statusAt(path).permissions & kWriteBits) == 0) return false;
    if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0) return true;
    if (errno == EACCES || errno == EPERM || errno == EROFS || errno == ETXTBSY) return false;
    fail("faccessat");
  }

  std::string resolve(const std::string& path) override {
    char* resolved = realpath(path.c_str(), nullptr);
    if (resolved == nullptr) fail("realpath");
    std::string result = resolved;
    std::free(resolved);
    return result;
  }

  Handle openToRead(const std::string& path) override {
    return persist("open", [&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
  }

  Handle createNew(const std::string& path) override {
    constexpr mode_t kOwnerOnly = 0600;
    return persist("open",
                   [&] { return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly); });
  }

  Handle createUnnamed(const std::string& folder) override {
    constexpr mode_t kOwnerOnly = 0600;
    static const bool canBeNamed = access("/proc/self/fd", X_OK) == 0;
    if (!canBeNamed) throw std::system_error(ENOTSUP, std::generic_category(), "open");
    return persist("open", [&] { return open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, kOwnerOnly); });
  }

  void giveName(Handle unnamed, const std::string& path) override {
    if (linkat(AT_FDCWD, pathOf(unnamed).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) != 0)
      fail("linkat");
  }

  Handle openFolder(const std::string& path) override {
    return persist("open", [&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  }

  Handle openToAppend(const std::string& path) override {
    constexpr mode_t kOwnerOnly = 0600;
    return persist("open",
                   [&] { return open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kOwnerOnly); });
  }

  FileStatus status(Handle file) override {
    struct stat found = {};
    if (fstat(file, &found) != 0) fail("fstat");
    return statusOf(found);
  }

  std::size_t read(Handle file, std::uint64_t offset, std::span<std::uint8_t> buffer) override {
    return static_cast<std::size_t>(persist(
        "pread", [&] { return pread(file, buffer.data(), buffer.size(), static_cast<off_t>(offset)); }));
  }

  Bytes map(Handle file, std::size_t size) override { return mapFile(file, size); }

  std::size_t write(Handle file, ByteSpan bytes) override {
    return static_cast<std::size_t>(
        persist("write", [&] { return ::write(file, bytes.data(), bytes.size()); }));
  }

  void flush(Handle file) override {
    // Some file systems have nothing to flush for a folder and say so.
    while (fsync(file) != 0) {
      if (errno == EINVAL || errno == ENOTSUP) return;
      if (errno != EINTR) fail("fsync");
    }
  }

  std::future<void> startFlush(Handle file) override {
    // Where there can be no more threads, whoever waits flushes.
    return std::async(std::launch::async | std::launch::deferred, [this, file] { flush(file); });
  }

  void startWriting(Handle file) override { sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE); }

  void close(Handle file) override {
    if (::close(file) != 0 && errno != EINTR) fail("close");
  }

  void setOwner(Handle file, std::uint32_t owner, std::uint32_t group) override {
    if (fchown(file, owner, group) != 0) fail("fchown");
  }

  void setPermissions(Handle file, std::uint32_t permissions) override {
    if (fchmod(file, permissions) != 0) fail("fchmod");
  }

  void setModified(Handle file, std::int64_t seconds, std::int64_t nanoseconds) override {
    const timespec times[2] = {{0, UTIME_OMIT}, {seconds, nanoseconds}};
    if (futimens(file, times) != 0) fail("futimens");
  }

  void copyAttributes(Handle from, Handle to) override {
    for (const std::string& name : attributeNames(from)) {
      const ssize_t size = fgetxattr(from, name.c_str(), nullptr, 0);
      std::vector<char> value(size > 0 ? static_cast<std::size_t>(size) : 0);
      const bool copied = size >= 0 && fgetxattr(from, name.c_str(), value.data(), value.size()) == size &&
                          fsetxattr(to, name.c_str(), value.data(), value.size(), 0) == 0;
      if (!copied && mustBeKept(name)) fail("fsetxattr");
    }
  }

  void rename(const std::string& from, const std::string& to) override {
    if (::rename(from.c_str(), to.c_str()) != 0) fail("rename");
  }

  void renameToFree(const std::string& from, const std::string& to) override {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno != EINVAL && errno != ENOSYS) fail("renameat2");
    // Not every file system knows how; a second name does the same in two steps.
    if (link(from.c_str(), to.c_str()) != 0) fail("link");
    if (unlink(from.c_str()) != 0) fail("unlink");
  }

  void exchange(const std::string& one, const std::string& other) override {
    if (renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) != 0) fail("renameat2");
  }

  void remove(const std::string& path) override {
    if (unlink(path.c_str()) != 0) fail("unlink");
  }

  void createFolder(const std::string& path) override {
    constexpr mode_t kOwnerOnly = 0700;
    if (mkdir(path.c_str(), kOwnerOnly) != 0) fail("mkdir");
  }

  std::vector<std::string> names(const std::string& folder) override {
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    if (!listing) fail("opendir");
    std::vector<std::string> found;
    for (;;) {
      errno = 0;
      const dirent* entry = readdir(listing.get());
      if (entry == nullptr) break;
      const std::string_view name = entry->d_name;
      if (name != "." && name != "..") found.emplace_back(name);
    }
    if (errno != 0) fail("readdir");
    std::sort(found.begin(), found.end());
    return found;
  }

  void removeFolder(const std::string& path) override {
    if (rmdir(path.c_str()) != 0) fail("rmdir");
  }

  bool tryLock(Handle file) override {
    if (flock(file, LOCK_EX | LOCK_NB) == 0) return true;
    if (errno == EWOULDBLOCK) return false;
    fail("flock");
  }
};

}  // namespace

FileSystem& machineFileSystem() {
  static MachineFileSystem system;
  return system;
}

}  // namespace pluvo::files
