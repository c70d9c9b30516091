#pragma once

#include "printer.h"
#include "report/report_place.h"

#include <memory>
#include <string>

namespace pluvo::cli {

std::unique_ptr<Printer> htmlReport(const ReportPlace& place, const std::string& command);
std::unique_ptr<Printer> csvReport(const ReportPlace& place);
std::unique_ptr<Printer> jsonReport(const ReportPlace& place, const std::string& command);

}  // namespace pluvo::cli
