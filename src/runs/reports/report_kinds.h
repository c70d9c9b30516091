#pragma once

#include "reports/report_place.h"
#include "runs/observer.h"

#include <memory>
#include <string>

namespace pluvo::runs {

std::unique_ptr<Observer> htmlReport(const ReportPlace& place, const std::string& command);
std::unique_ptr<Observer> csvReport(const ReportPlace& place);
std::unique_ptr<Observer> jsonReport(const ReportPlace& place, const std::string& command);

}  // namespace pluvo::runs
