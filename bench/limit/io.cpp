#include "io.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace limit {
namespace {

[[noreturn]] void fail(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

Mapped::Mapped(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (file < 0 || fstat(file, &status) != 0) fail(path);
  const auto size = static_cast<std::size_t>(status.st_size);
  void* at = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
  close(file);
  if (at == MAP_FAILED) fail(path);
  bytes_ = {static_cast<const char*>(at), size};
}

Mapped::~Mapped() { munmap(const_cast<char*>(bytes_.data()), bytes_.size()); }

Written::Written(std::string path) : path_(std::move(path)), temporary_(path_ + ".limit") {
  file_ = open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (file_ < 0) fail(temporary_);
}

Written::~Written() {
  if (file_ >= 0) close(file_);
}

void Written::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_, bytes.data(), bytes.size());
    if (written < 0) fail(temporary_);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void Written::flush(bool folderToo) {
  if (fsync(file_) != 0 || rename(temporary_.c_str(), path_.c_str()) != 0) fail(path_);
  if (!folderToo) return;
  const auto slash = path_.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path_.substr(0, slash + 1);
  const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0 || fsync(handle) != 0) fail(folder);
  close(handle);
}

}  // namespace limit
