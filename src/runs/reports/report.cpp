#include "reports/report.h"

#include "reports/report_kinds.h"

namespace pluvo::runs {

std::unique_ptr<Observer> reportPrinter(const ReportPlace& place, const std::string& command,
                                        const std::vector<SliceTold>* slices) {
  switch (place.kind) {
    case ReportKind::html:
      return htmlReport(place, command, slices);
    case ReportKind::csv:
      return csvReport(place, slices);
    case ReportKind::json:
      break;
  }
  return jsonReport(place, command, slices);
}

}  // namespace pluvo::runs
