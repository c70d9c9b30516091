#pragma once

#include "reports/report_place.h"
#include "runs/observer.h"
#include "runs/slice_report.h"

#include <memory>
#include <string>
#include <vector>

namespace pluvo::runs {

/// A report of the whole run in a file. The ending of its name says its kind: ".html" is a page for people,
/// ".csv" a row for each document and block, ".json" an object with all. It stands whole in its place when
/// the run ends; until then its parts are in temporary files.
///
/// The command is the one that the report names; the slices, if any, are those that it is made of, known at
/// its end. Throws CannotBegin where the file cannot be made.
std::unique_ptr<Observer> reportPrinter(const ReportPlace& place, const std::string& command,
                                        const std::vector<SliceTold>* slices = nullptr);

}  // namespace pluvo::runs
