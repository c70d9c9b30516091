#pragma once

#include "errors/fault.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// The texts of a report.
namespace pluvo::errors {

/// Adds the fault's text at this level of detail to the report; level 0 replaces it.
void addReport(std::u16string& report, const Fault& fault, std::int32_t detailLevel);

/// The values of an error object, asked for by name: "Number", "Description", "Source", "HelpFile",
/// "HelpContext". Made for error objects of databases; nothing calls it yet.
using NamedValues = std::function<std::u16string(std::u16string_view name)>;
void addReport(std::u16string& report, const NamedValues& error, std::int32_t detailLevel);

/// The report as a text literal for the error table: line ends as ":", quotes doubled. Nothing calls it yet.
std::u16string escapedForTable(std::u16string_view report);

}  // namespace pluvo::errors
