#include "files/file_system.h"

#include <system_error>
#include <utility>

namespace pluvo::files {

namespace {
constexpr Handle kClosed = -1;
}

OpenFile::~OpenFile() {
  try {
    close();
  } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): nothing depends on it any more
  }
}

void OpenFile::close() {
  const Handle handle = std::exchange(handle_, kClosed);
  if (handle != kClosed) system_->close(handle);
}

bool isSameFile(FileSystem& system, const std::string& path, const std::string& other) {
  try {
    const Stamp one = system.statusAt(path).stamp;
    const Stamp two = system.statusAt(other).stamp;
    return one.device == two.device && one.inode == two.inode;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace pluvo::files
