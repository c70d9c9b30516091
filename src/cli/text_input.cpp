#include "text_input.h"

#include "base/utf.h"
#include "usage_error.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

namespace pluvo::cli {
namespace {

// Far beyond any text to be found or put in, far below a size that would trouble the machine.
constexpr std::size_t kMostBytes = 64U << 20U;

[[noreturn]] void refuse(std::string_view option, const std::string& why) {
  throw UsageError(std::string(option) + ": " + why);
}

[[noreturn]] void refuseToOpen(std::string_view option, const std::string& path, int error) {
  refuse(option, "cannot open " + path + ": " + std::strerror(error) + ".");
}

/// "/dev/fd/63", which a shell puts for what another command prints, and the like.
std::optional<int> openDescriptor(std::string_view path) {
  if (path == "/dev/stdin") return STDIN_FILENO;
  for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!path.starts_with(folder)) continue;
    const std::string_view digits = path.substr(folder.size());
    int number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc{} && end == digits.data() + digits.size()) return number;
  }
  return std::nullopt;
}

/// Refuses pipes and devices: opening or reading one may wait for ever. The empty device is taken.
void requireFile(const struct stat& found, const std::string& path, std::string_view option) {
  const bool isNull = S_ISCHR(found.st_mode) && found.st_rdev == makedev(1, 3);
  if (S_ISREG(found.st_mode) || isNull) return;
  if (S_ISDIR(found.st_mode)) refuse(option, "cannot read " + path + ": " + std::strerror(EISDIR) + ".");
  refuse(option, path + " is a " +
                     (S_ISFIFO(found.st_mode)   ? "named pipe"
                      : S_ISSOCK(found.st_mode) ? "socket"
                                                : "device") +
                     ", not a file; copy what it delivers to a file first.");
}

File openFile(const std::string& path, std::string_view option) {
  struct stat found = {};
  // Opening a device may already do something.
  if (::stat(path.c_str(), &found) != 0) refuseToOpen(option, path, errno);
  requireFile(found, path, option);
  const int handle = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  File file(handle < 0 ? nullptr : ::fdopen(handle, "rb"));
  if (!file) refuseToOpen(option, path, errno);
  if (::fstat(handle, &found) == 0) requireFile(found, path, option);
  return file;
}

std::string wholeOf(const File& file, const std::string& path, std::string_view option) {
  std::string bytes;
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    bytes.append(buffer.data(), count);
    if (bytes.size() > kMostBytes)
      refuse(option, "the text in " + path + " is over 64 MiB; use a shorter one.");
  }
  if (std::ferror(file.get()) != 0) refuse(option, "cannot read " + path + ": " + std::strerror(errno) + ".");
  return bytes;
}

}  // namespace

File openGiven(const std::string& path, std::string_view option) {
  if (path == "-") return File(stdin);
  const auto descriptor = openDescriptor(path);
  if (!descriptor) return openFile(path, option);
  File file(::fdopen(::dup(*descriptor), "rb"));
  if (!file) refuseToOpen(option, path, EBADF);
  return file;
}

std::string bytesFrom(const std::string& path, std::string_view option) {
  return wholeOf(openGiven(path, option), path, option);
}

std::string bytesOfFile(const std::string& path, std::string_view option) {
  return wholeOf(openFile(path, option), path, option);
}

std::string textFromFile(const std::string& path, std::string_view option) {
  std::string text = bytesFrom(path, option);
  if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
  const std::size_t sound = base::wellFormedLength(text);
  if (sound < text.size()) {
    refuse(option, "byte " + std::to_string(sound + 1) +
                       " of the text is not UTF-8; convert it first, with iconv for instance.");
  }
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace pluvo::cli
