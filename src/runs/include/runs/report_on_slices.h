#pragma once

#include "runs/slice_report.h"

#include <optional>
#include <string>

namespace pluvo::runs {

struct ReportFiles {
  std::optional<std::string> report;  ///< a page, a table or JSON, by its ending
  bool overwrite = false;             ///< whatever lies there
  std::optional<std::string> rest;    ///< a new file for the documents that failed or are missing
  bool nullEnded = false;             ///< their names end with a zero byte, not with a line
};

/// Tells of the slices, and writes the files. Throws CannotBegin (report) where one cannot be made,
/// SlicesRefused where there can be no rest, since a slice is going on, and DocumentError (io).
void reportOn(SliceReport& slices, const ReportFiles& files, Observer& printer);

}  // namespace pluvo::runs
