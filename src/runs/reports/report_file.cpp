#include "reports/report_file.h"

#include "errors/document_error.h"
#include "runs/run.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace pluvo::runs {

namespace {

/// A report tells what documents hold: at first it is its user's alone. The file has the group and the
/// permissions of the one that it replaces, if that was the user's own.
void setPermissions(int file, const ReportPlace& place) {
  if (!place.before || place.before->st_uid != ::geteuid()) return;
  const mode_t mode = place.before->st_mode & 0777U;
  const bool sameGroup = ::fchown(file, static_cast<uid_t>(-1), place.before->st_gid) == 0;
  (void)::fchmod(file, sameGroup ? mode : mode & 0707U);
}

bool isSameVersion(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
         one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

}  // namespace

ReportFile::ReportFile(const ReportPlace& place) : place_(place), temporary_(place.path + ".XXXXXX") {
  const int handle = mkstemp(temporary_.data());
  later_.reset(handle >= 0 ? std::tmpfile() : nullptr);
  if (!later_) {
    const int error = errno;
    if (handle >= 0) {
      close(handle);
      unlink(temporary_.c_str());
    }
    throw CannotBegin(CannotBegin::Reason::report,
                      "cannot make " + place_.path + ": " + std::strerror(error) + ".");
  }
  setPermissions(handle, place_);
  file_.reset(fdopen(handle, "wb"));
}

ReportFile::~ReportFile() {
  if (file_) unlink(temporary_.c_str());
}

void ReportFile::require(bool good) const {
  if (good) return;
  throw errors::DocumentError(
      errors::Problem::io, "The report " + place_.path + " cannot be written: " + std::strerror(errno) + ".");
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
  moveToPlace();
  file_.reset();
}

void ReportFile::moveToPlace() {
  struct stat now = {};
  const bool isThere = ::lstat(place_.path.c_str(), &now) == 0;
  const bool asBefore = place_.before ? !isThere || isSameVersion(now, *place_.before) : !isThere;
  if (asBefore && place_.before) {
    require(std::rename(temporary_.c_str(), place_.path.c_str()) == 0);
    return;
  }
  if (asBefore && ::link(temporary_.c_str(), place_.path.c_str()) == 0) {
    ::unlink(temporary_.c_str());
    return;
  }
  if (asBefore && errno != EEXIST) return require(std::rename(temporary_.c_str(), place_.path.c_str()) == 0);
  file_.reset();
  throw errors::DocumentError(errors::Problem::io,
                              "Another program put a file at " + place_.path +
                                  " while the run went on, and it was left there. The report is in " +
                                  temporary_ + ".");
}

}  // namespace pluvo::runs
