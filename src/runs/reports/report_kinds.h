#pragma once

#include "reports/report_place.h"
#include "runs/observer.h"
#include "runs/slice_report.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::runs {

std::unique_ptr<Observer> htmlReport(const ReportPlace& place, const std::string& command,
                                     const std::vector<SliceTold>* slices);
std::unique_ptr<Observer> csvReport(const ReportPlace& place, const std::vector<SliceTold>* slices);
std::unique_ptr<Observer> jsonReport(const ReportPlace& place, const std::string& command,
                                     const std::vector<SliceTold>* slices);

}  // namespace pluvo::runs
