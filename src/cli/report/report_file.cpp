#include "report/report_file.h"

#include "files/problem.h"
#include "printer.h"
#include "usage_error.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace pluvo::cli {

ReportFile::ReportFile(std::string path) : path_(std::move(path)), temporary_(path_ + ".XXXXXX") {
  struct stat found = {};
  if (stat(path_.c_str(), &found) == 0 && !S_ISREG(found.st_mode))
    throw UsageError("--report: " + shownPath(path_) + " is not a file.");
  const int handle = mkstemp(temporary_.data());
  later_.reset(handle >= 0 ? std::tmpfile() : nullptr);
  if (!later_) {
    const int error = errno;
    if (handle >= 0) {
      close(handle);
      unlink(temporary_.c_str());
    }
    throw UsageError("--report: cannot make " + shownPath(path_) + ": " + std::strerror(error) + ".");
  }
  const mode_t mask = umask(0);
  umask(mask);
  (void)fchmod(handle, 0666 & ~mask);
  file_.reset(fdopen(handle, "wb"));
}

ReportFile::~ReportFile() {
  if (file_) unlink(temporary_.c_str());
}

void ReportFile::require(bool good) const {
  if (good) return;
  throw files::DocumentError(files::Problem::io, "The report " + shownPath(path_) +
                                                     " cannot be written: " + std::strerror(errno) + ".");
}

void ReportFile::writeTo(std::FILE* file, std::string_view text) const {
  require(std::fwrite(text.data(), 1, text.size(), file) == text.size());
}

void ReportFile::addLater(std::string_view text) { writeTo(later_.get(), text); }

void ReportFile::finish(std::string_view beginning, std::string_view end) {
  writeTo(file_.get(), beginning);
  require(std::fflush(later_.get()) == 0);
  std::rewind(later_.get());
  std::array<char, 65536> buffer = {};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), later_.get()))
    writeTo(file_.get(), {buffer.data(), count});
  require(std::ferror(later_.get()) == 0);
  writeTo(file_.get(), end);
  require(std::fflush(file_.get()) == 0 && fsync(fileno(file_.get())) == 0);
  require(std::rename(temporary_.c_str(), path_.c_str()) == 0);
  file_.reset();
}

}  // namespace pluvo::cli
