#include "files/file_system.h"
#include "mapping.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
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
  if (S_ISLNK(mode)) return FileKind::link;
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

/// Attributes by which the system vouches for the contents, or grants rights to a program.
bool isOfContents(std::string_view attribute) {
  return attribute == "security.capability" || attribute == "security.ima" || attribute == "security.evm";
}

std::vector<std::string> attributeNames(Handle file) {
  if (flistxattr(file, nullptr, 0) <= 0) return {};
  std::vector<char> list(std::size_t{64} * 1024);  // the most that Linux hands out
  const ssize_t length = flistxattr(file, list.data(), list.size());
  std::vector<std::string> names;
  for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(names.back().size()) + 1)
    names.emplace_back(list.data() + at);
  return names;
}

static_assert(Place::kNoFolder == AT_FDCWD);

/// The flag, where the last name may not be a link.
int unlessPath(const Place& place, int flag) { return place.folder == Place::kNoFolder ? 0 : flag; }

Handle openAt(const Place& place, int flags, mode_t mode = 0) {
  const int noLink = unlessPath(place, O_NOFOLLOW);
  return persist("open",
                 [&] { return openat(place.folder, place.name.c_str(), flags | noLink | O_CLOEXEC, mode); });
}

constexpr mode_t kOwnerOnly = 0600;
constexpr int kWithoutWaiting = O_NONBLOCK | O_NOCTTY;

class MachineFileSystem final : public FileSystem {
 public:
  std::uint32_t user() override { return geteuid(); }

  FileStatus statusAt(const Place& place) override {
    struct stat found = {};
    if (fstatat(place.folder, place.name.c_str(), &found, unlessPath(place, AT_SYMLINK_NOFOLLOW)) != 0)
      fail("fstatat");
    return statusOf(found);
  }

  bool exists(const Place& place) override {
    struct stat found = {};
    if (fstatat(place.folder, place.name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0) return true;
    if (errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG) return false;
    fail("fstatat");
  }

  bool mayWrite(const Place& place, const FileStatus& status) override {
    constexpr std::uint32_t kWriteBits = 0222;
    if ((status.permissions & kWriteBits) == 0) return false;
    if (faccessat(place.folder, place.name.c_str(), W_OK, AT_EACCESS) == 0) return true;
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

  Handle openToRead(const Place& place) override { return openAt(place, O_RDONLY | kWithoutWaiting); }

  Handle openToLock(const Place& place) override { return openAt(place, O_RDWR | kWithoutWaiting); }

  Handle createNew(const Place& place) override {
    return openAt(place, O_RDWR | O_CREAT | O_EXCL, kOwnerOnly);
  }

  Handle createUnnamed(const Place& folder) override {
    static const bool canBeNamed = access("/proc/self/fd", X_OK) == 0;
    if (!canBeNamed) throw std::system_error(ENOTSUP, std::generic_category(), "open");
    return openAt(folder, O_RDWR | O_TMPFILE, kOwnerOnly);
  }

  void giveName(Handle unnamed, const Place& place) override {
    // Not every system lets every user do this; the way through /proc takes longer.
    if (linkat(unnamed, "", place.folder, place.name.c_str(), AT_EMPTY_PATH) == 0) return;
    if (errno != ENOENT && errno != EPERM && errno != EINVAL) fail("linkat");
    if (linkat(AT_FDCWD, pathOf(unnamed).c_str(), place.folder, place.name.c_str(), AT_SYMLINK_FOLLOW) != 0)
      fail("linkat");
  }

  Handle openFolder(const Place& place) override { return openAt(place, O_RDONLY | O_DIRECTORY); }

  Handle openToAppend(const Place& place) override {
    return openAt(place, O_RDWR | O_CREAT | O_APPEND, kOwnerOnly);
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

  base::Bytes map(Handle file, std::size_t size) override { return mapFile(file, size); }

  std::size_t write(Handle file, base::ByteSpan bytes) override {
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

  std::future<void> begin(const std::function<void()>& work) override {
    // Where there can be no more threads, the waiting thread does it. The library takes the work once for the
    // new thread and then again, so it must not be moved.
    return std::async(std::launch::async | std::launch::deferred, work);
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
      if (isOfContents(name)) continue;
      const ssize_t size = fgetxattr(from, name.c_str(), nullptr, 0);
      std::vector<char> value(size > 0 ? static_cast<std::size_t>(size) : 0);
      const bool copied = size >= 0 && fgetxattr(from, name.c_str(), value.data(), value.size()) == size &&
                          fsetxattr(to, name.c_str(), value.data(), value.size(), 0) == 0;
      if (!copied && mustBeKept(name)) fail("fsetxattr");
    }
  }

  void rename(const Place& from, const Place& to) override {
    if (renameat(from.folder, from.name.c_str(), to.folder, to.name.c_str()) != 0) fail("renameat");
  }

  void renameToFree(const Place& from, const Place& to) override {
    if (renameAs(from, to, RENAME_NOREPLACE) == 0) return;
    if (errno != EINVAL && errno != ENOSYS) fail("renameat2");
    // Not every file system knows how; a second name does the same in two steps.
    if (linkat(from.folder, from.name.c_str(), to.folder, to.name.c_str(), 0) != 0) fail("linkat");
    remove(from);
  }

  void exchange(const Place& one, const Place& other) override {
    if (renameAs(one, other, RENAME_EXCHANGE) != 0) fail("renameat2");
  }

  void remove(const Place& place) override {
    if (unlinkat(place.folder, place.name.c_str(), 0) != 0) fail("unlinkat");
  }

  void createFolder(const Place& place) override {
    constexpr mode_t kOwnerMayEnter = 0700;
    if (mkdirat(place.folder, place.name.c_str(), kOwnerMayEnter) != 0) fail("mkdirat");
  }

  std::vector<std::string> names(const Place& folder) override {
    const Handle open = openFolder(folder);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(fdopendir(open), closedir);
    if (!listing) {
      const int error = errno;
      ::close(open);
      throw std::system_error(error, std::generic_category(), "fdopendir");
    }
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

  void removeFolder(const Place& place) override {
    if (unlinkat(place.folder, place.name.c_str(), AT_REMOVEDIR) != 0) fail("unlinkat");
  }

  bool tryLock(Handle file) override {
    // Who may only read a file may lock it for reading, which is in the way of the first lock.
    return setLock(file, F_WRLCK) || setLock(file, F_RDLCK);
  }

  bool tryHold(Handle file, Hold hold) override {
    return setLock(file, hold == Hold::alone ? F_WRLCK : F_RDLCK);
  }

 private:
  static int renameAs(const Place& from, const Place& to, unsigned flags) {
    return renameat2(from.folder, from.name.c_str(), to.folder, to.name.c_str(), flags);
  }

  static bool setLock(Handle file, int type) {
    struct flock lock = {};
    lock.l_type = static_cast<short>(type);
    lock.l_whence = SEEK_SET;
    if (fcntl(file, F_OFD_SETLK, &lock) == 0) return true;
    if (errno == EAGAIN || errno == EACCES) return false;
    fail("fcntl");
  }
};

}  // namespace

FileSystem& machineFileSystem() {
  static MachineFileSystem system;
  return system;
}

}  // namespace pluvo::files
