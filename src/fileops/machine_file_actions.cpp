#ifndef _WIN32

#include "base/names.h"
#include "fileops/file_actions.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace pluvo::fileops {

namespace {

namespace fs = std::filesystem;

ErrorCode lastError(int result) { return result == 0 ? kDone : errno; }

bool isInFolder(const fs::path& file) {
  std::error_code error;
  return !file.has_parent_path() || fs::is_directory(file.parent_path(), error);
}

class MachineFileActions : public FileActions {
 public:
  ErrorCode copy(const std::u16string& from, const std::u16string& to) override {
    const fs::path source = base::machinePath(from);
    const fs::path destination = base::machinePath(to);
    std::error_code error;
    fs::copy_file(source, destination, fs::copy_options::overwrite_existing, error);
    if (error == std::errc::no_such_file_or_directory && !(isInFolder(source) && isInFolder(destination)))
      return kPathNotFound;
    return error.value();
  }
  ErrorCode createFolder(const std::u16string& path) override {
    return lastError(mkdir(base::machinePath(path).c_str(), 0777));
  }
  ErrorCode deleteFile(const std::u16string& path) override {
    return lastError(unlink(base::machinePath(path).c_str()));
  }
  ErrorCode deleteFolder(const std::u16string& path) override {
    return lastError(rmdir(base::machinePath(path).c_str()));
  }
  std::optional<std::u16string> systemFolder() override { return std::nullopt; }
  std::uint32_t startHidden(const std::u16string& /*commandLine*/) override { return 0; }
};

}  // namespace

std::unique_ptr<FileActions> machineFileActions() { return std::make_unique<MachineFileActions>(); }

}  // namespace pluvo::fileops

#endif
