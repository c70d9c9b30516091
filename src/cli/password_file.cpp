#include "password_file.h"

#include "base/at_end.h"
#include "base/secret_text.h"
#include "base/utf.h"
#include "text_input.h"
#include "usage_error.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace pluvo::cli {
namespace {

constexpr std::string_view kOption = "--password-file";
constexpr std::size_t kMostBytes = std::size_t{1} << 20U;

[[noreturn]] void refuse(const std::string& why) { throw UsageError(std::string(kOption) + ": " + why); }

/// Into memory that is taken once, since growing would leave copies.
void readInto(std::string& bytes, int file, const std::string& path) {
  bytes.resize(kMostBytes + 1);
  std::size_t size = 0;
  while (size < bytes.size()) {
    const ssize_t count = ::read(file, bytes.data() + size, bytes.size() - size);
    if (count == 0) break;
    if (count < 0 && errno != EINTR) refuse("cannot read " + path + ": " + std::strerror(errno) + ".");
    if (count > 0) size += static_cast<std::size_t>(count);
  }
  if (size > kMostBytes) refuse("the passwords in " + path + " are over 1 MiB; use fewer.");
  bytes.resize(size);
}

}  // namespace

PasswordFile passwordsFrom(const std::string& path) {
  const File opened = openGiven(path, kOption);
  const int file = ::fileno(opened.get());  // read past stdio, which would keep a copy
  PasswordFile read;
  struct stat status = {};
  read.othersMayRead =
      ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & (S_IRGRP | S_IROTH)) != 0;

  std::string bytes;
  const base::AtEnd wiping([&] { base::wipe(bytes); });
  readInto(bytes, file, path);
  const std::size_t sound = base::wellFormedLength(bytes);
  if (sound < bytes.size()) {
    refuse("byte " + std::to_string(sound + 1) + " of " + path +
           " is not UTF-8; convert it first, with iconv for instance.");
  }
  std::string_view rest = bytes;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);
  if (rest.ends_with('\n')) rest.remove_suffix(1);
  for (bool more = true; more;) {
    const std::size_t end = rest.find('\n');
    more = end != std::string_view::npos;
    std::string_view line = rest.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    read.passwords.emplace_back(base::utf16(line));
    if (more) rest.remove_prefix(end + 1);
  }
  return read;
}

}  // namespace pluvo::cli
