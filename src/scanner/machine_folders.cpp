#ifndef _WIN32

#include "base/names.h"
#include "scanner/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace pluvo::scanner {

namespace {

namespace fs = std::filesystem;

/// A folder that is being read.
class Reading {
 public:
  explicit Reading(const std::string& folder) : stream_(opendir(folder.c_str()), closedir) {
    if (!stream_) error_ = errno;
    struct stat status = {};
    if (stream_ && fstat(descriptor(), &status) == 0) device_ = status.st_dev;
  }

  /// Null after the last one, and where the folder cannot be read on.
  const dirent* next() {
    if (!stream_) return nullptr;
    errno = 0;
    const dirent* const entry = readdir(stream_.get());
    if (entry == nullptr) error_ = errno;
    return entry;
  }

  std::error_code error() const { return {error_, std::generic_category()}; }

  bool isFolder(const dirent& entry) const {
    if (entry.d_type == DT_DIR) return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
    const mode_t mode = modeOf(entry, 0);
    // An entry of unknown kind, on a failing disk, is walked as a folder, so that the walk tells of it.
    return mode != 0 ? S_ISDIR(mode) : entry.d_type == DT_UNKNOWN && errno != ENOENT && errno != ELOOP;
  }

  bool isLink(const dirent& entry) const {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_LNK;
    return S_ISLNK(modeOf(entry, AT_SYMLINK_NOFOLLOW));
  }

  std::optional<FileIdentity> identityOf(const dirent& entry) {
    if (entry.d_type != DT_REG || !numbersAreFiles(entry)) return std::nullopt;
    return FileIdentity{device_, entry.d_ino};
  }

 private:
  int descriptor() const { return dirfd(stream_.get()); }

  /// 0 where there is nothing.
  mode_t modeOf(const dirent& entry, int flags) const {
    struct stat status = {};
    return fstatat(descriptor(), entry.d_name, &status, flags) == 0 ? status.st_mode : 0;
  }

  /// File systems that are laid over others may have other numbers in a folder's list than a file has when it
  /// is asked for itself. Then that shows at any file of the folder.
  bool numbersAreFiles(const dirent& file) {
    if (!asked_) {
      asked_ = true;
      struct stat status = {};
      numbersAreFiles_ = fstatat(descriptor(), file.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                         status.st_dev == device_ && status.st_ino == file.d_ino;
    }
    return numbersAreFiles_;
  }

  std::unique_ptr<DIR, int (*)(DIR*)> stream_;
  int error_ = 0;
  dev_t device_ = 0;
  bool asked_ = false;
  bool numbersAreFiles_ = false;
};

class MachineFolders : public Folders {
 public:
  std::error_code forEachEntry(const std::u16string& folder, const Visit& visit) override {
    struct Found {
      std::string name;
      bool isFolder;
      bool isLink;
      std::optional<FileIdentity> identity;
    };
    std::vector<Found> found;
    std::error_code error;
    {
      Reading reading(base::nameBytes(folder));
      while (const dirent* entry = reading.next()) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        found.push_back({std::string(name), reading.isFolder(*entry), reading.isLink(*entry),
                         reading.identityOf(*entry)});
      }
      error = reading.error();
    }
    std::ranges::sort(found, {}, &Found::name);
    for (const Found& one : found)
      visit({base::nameText(one.name), one.isFolder, false, one.isLink, one.identity});
    return error;
  }

  std::u16string resolved(const std::u16string& folder) override {
    std::error_code error;
    const fs::path path = fs::canonical(base::machinePath(folder), error);
    return error ? folder : base::machineText(path);
  }

  bool isFolder(const std::u16string& path) override {
    std::error_code error;
    return fs::is_directory(base::machinePath(path), error);
  }

  std::vector<std::u16string> drives() override { return {}; }
};

}  // namespace

std::unique_ptr<Folders> machineFolders() { return std::make_unique<MachineFolders>(); }

}  // namespace pluvo::scanner

#endif
