#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pluvo::runs {

/// The beginning of a report's first line, by which a later run knows that it may replace the file.
inline constexpr std::string_view kHtmlMark = "<!DOCTYPE html><!-- PLUVO report -->";
inline constexpr std::string_view kJsonMark = "{\"report\":\"PLUVO\",";
/// No row of its own, which spreadsheets would show: the names of the first columns and the mark for UTF-8.
inline constexpr std::string_view kCsvMark =
    "\xEF\xBB\xBFkind,file,state,found,operated,skipped,paragraph,text before,block,block changed,"
    "text after,";

enum class ReportKind : std::uint8_t { html, csv, json };

/// Where a report goes, as it was found before the run.
struct ReportPlace {
  ReportKind kind;
  std::string path;                   ///< without links
  std::optional<struct stat> before;  ///< of the file there, if there is one
  bool isForeign = false;             ///< that file is not empty and no report
};

/// Throws CannotBegin where the ending names no kind of report, or where the path leads to something else
/// than a file. A file that is neither empty nor a report is refused, too, unless it may be overwritten.
ReportPlace reportPlace(const std::string& path, bool overwrite);

}  // namespace pluvo::runs
