#include "errors/clsErrorLogging.h"

#include "base/data_file.h"
#include "base/utf.h"
#include "report_text.h"

#include <array>
#include <ctime>
#include <utility>

namespace pluvo::errors {

std::u16string dateAndTime() {
  const std::time_t now = std::time(nullptr);
  std::tm parts = {};
#ifdef _WIN32
  localtime_s(&parts, &now);
#else
  localtime_r(&now, &parts);
#endif
  std::array<char, 32> text = {};
  return base::utf16({text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)});
}

clsErrorLogging::clsErrorLogging(const Fault& currentFault, MessageSink& messages, Clock clock)
    : currentFault_(currentFault), messages_(messages), clock_(std::move(clock)) {}

void clsErrorLogging::DBUsesADO(std::any connection) {
  connection_ = std::move(connection);
  adoInUse_ = true;
}

void clsErrorLogging::ProcessErrors(const std::optional<std::u16string>& prefix) {
  report_.clear();
  captured_ = currentFault_;
  addReport(report_, captured_, detailLevel_);
  if (prefix) report_ = *prefix + u"\r\n" + report_;
  std::u16string shown = report_;
  if (!logFile_.empty() && !appendToLog()) {
    if (!shown.ends_with(u"\r\n")) shown += u"\r\n";
    shown += u"This report cannot be kept in \"" + logFile_ +
             u"\": see that its folder may be written to and the disk is not full.";
  }
  messages_.show(shown, titleCaption_.empty() ? std::nullopt : std::optional(titleCaption_));
}

bool clsErrorLogging::appendToLog() const {
  std::ofstream log = base::openDataFile(logFile_, std::ios::app);
  log << "\r\n"
      << base::utf8(clock_()) << "\r\n"
      << base::utf8(report_) << "\r\n"
      << std::string(64, '-') << "/\r\n";
  log.close();
  return log.good();
}

}  // namespace pluvo::errors
