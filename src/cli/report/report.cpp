#include "report/report.h"

#include "report/report_kinds.h"

namespace pluvo::cli {

std::unique_ptr<Printer> reportPrinter(const ReportPlace& place, const std::string& command) {
  switch (place.kind) {
    case ReportKind::html:
      return htmlReport(place, command);
    case ReportKind::csv:
      return csvReport(place);
    case ReportKind::json:
      break;
  }
  return jsonReport(place, command);
}

}  // namespace pluvo::cli
