#include "reports/report_place.h"

#include "base/ascii.h"
#include "runs/run.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>

namespace pluvo::runs {
namespace {

using Reason = CannotBegin::Reason;

[[noreturn]] void refuse(const std::string& why) { throw CannotBegin(CannotBegin::Reason::report, why); }

/// Without links; a file that is still to be made has none.
std::string resolved(const std::string& path) {
  std::array<char, PATH_MAX> real = {};
  if (::realpath(path.c_str(), real.data()) != nullptr) return real.data();
  struct stat link = {};
  if (errno == ENOENT && ::lstat(path.c_str(), &link) == 0)
    refuse(path + " is a link that leads nowhere; mend or remove it, or give another name.");
  return path;
}

ReportKind kindOf(const std::string& path) {
  const std::string type = base::asciiLower(path.substr(std::min(path.rfind('.'), path.size())));
  if (type == ".html" || type == ".htm") return ReportKind::html;
  if (type == ".csv") return ReportKind::csv;
  if (type == ".json") return ReportKind::json;
  throw CannotBegin(CannotBegin::Reason::reportKind,
                    "A report is a page, a table or JSON: give it a name that ends in .html, .csv or .json.",
                    path);
}

/// A file that cannot be read counts as no report.
bool isReport(const std::string& path) {
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (file < 0) return false;
  std::array<char, 256> front = {};
  const ssize_t length = ::read(file, front.data(), front.size());
  ::close(file);
  const std::string_view line(front.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  return std::ranges::any_of(std::array{kHtmlMark, kJsonMark, kCsvMark},
                             [&](std::string_view mark) { return line.starts_with(mark); });
}

}  // namespace

ReportPlace reportPlace(const std::string& path, bool overwrite) {
  ReportPlace place{kindOf(path), resolved(path), std::nullopt};
  struct stat found = {};
  if (::stat(place.path.c_str(), &found) != 0) return place;  // making it will tell the fault
  if (!S_ISREG(found.st_mode)) refuse(path + " is not a file.");
  place.before = found;
  place.isForeign = found.st_size > 0 && !isReport(place.path);
  if (place.isForeign && !overwrite)
    throw CannotBegin(CannotBegin::Reason::reportForeign,
                      path + " is there and is no report of PLUVO's; give another name.", path);
  return place;
}

}  // namespace pluvo::runs
