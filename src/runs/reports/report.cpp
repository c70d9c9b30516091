#include "reports/report.h"

#include "reports/report_kinds.h"

namespace pluvo::runs {

std::unique_ptr<Observer> reportPrinter(const ReportPlace& place, const std::string& command) {
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

}  // namespace pluvo::runs
