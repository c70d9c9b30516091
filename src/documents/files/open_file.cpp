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

}  // namespace pluvo::files
