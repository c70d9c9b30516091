#pragma once

#include "reports/report_place.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::runs {

/// The file a report is written into. Beside it is a place for text that is known earlier than its turn in
/// the file. Nothing has the report's name before it is finished.
class ReportFile {
 public:
  /// Throws CannotBegin where the file cannot be made.
  explicit ReportFile(const ReportPlace& place);
  ReportFile(const ReportFile&) = delete;
  ReportFile& operator=(const ReportFile&) = delete;
  ~ReportFile();

  /// Adds to the part that comes last. A failure to write, here and below, is a DocumentError (io).
  void addLater(std::string_view text);
  /// Writes the beginning, the added parts, and the end, and gives the file its name. Where another program
  /// put something there meanwhile that stays, and the report keeps the name it has.
  void finish(std::string_view beginning, std::string_view end);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, Close>;

  void require(bool good) const;
  void writeTo(std::FILE* file, std::string_view text) const;

  void moveToPlace();

  const ReportPlace place_;
  std::string temporary_;
  File file_;
  File later_;
};

}  // namespace pluvo::runs
