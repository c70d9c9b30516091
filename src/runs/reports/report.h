#pragma once

#include "reports/report_place.h"
#include "runs/observer.h"

#include <memory>
#include <string>

namespace pluvo::runs {

/// A report of the whole run in a file, of the kind that the name's ending says: ".html" a page for people,
/// ".csv" a row for each document and block, ".json" an object with all of them. It stands whole in its place
/// when the run ends; until then its parts are in temporary files.
///
/// The command is what the report says was run. Throws CannotBegin where the file cannot be made.
std::unique_ptr<Observer> reportPrinter(const ReportPlace& place, const std::string& command);

}  // namespace pluvo::runs
