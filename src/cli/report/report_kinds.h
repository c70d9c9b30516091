#pragma once

#include "printer.h"

#include <memory>
#include <string>

namespace pluvo::cli {

std::unique_ptr<Printer> htmlReport(const std::string& path, const std::string& command);
std::unique_ptr<Printer> csvReport(const std::string& path);
std::unique_ptr<Printer> jsonReport(const std::string& path, const std::string& command);

}  // namespace pluvo::cli
