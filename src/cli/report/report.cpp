#include "report/report.h"

#include "report/report_kinds.h"
#include "usage_error.h"

#include <algorithm>
#include <cctype>

namespace pluvo::cli {

std::unique_ptr<Printer> reportPrinter(const std::string& path, const std::string& command) {
  std::string type = path.substr(std::min(path.rfind('.'), path.size()));
  std::transform(type.begin(), type.end(), type.begin(), [](unsigned char c) { return std::tolower(c); });
  if (type == ".html" || type == ".htm") return htmlReport(path, command);
  if (type == ".csv") return csvReport(path);
  if (type == ".json") return jsonReport(path, command);
  throw UsageError(
      "--report writes a page, a table or JSON: give it a name that ends in .html, .csv or .json.");
}

}  // namespace pluvo::cli
