#include "errors/clsErrorLogging.h"

#include "errors/machine_path.h"
#include "errors/text.h"
#include "report_text.h"

#include <array>
#include <ctime>
#include <fstream>
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
  return utf16({text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts)});
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
  if (!logFile_.empty()) appendToLog();
  messages_.show(report_, titleCaption_.empty() ? std::nullopt : std::optional(titleCaption_));
}

void clsErrorLogging::appendToLog() const {
  std::ofstream log(machinePath(logFile_), std::ios::app | std::ios::binary);
  log << "\r\n" << utf8(clock_()) << "\r\n" << utf8(report_) << "\r\n" << std::string(64, '-') << "/\r\n";
  log.close();
  if (!log) throw Fault(kPathNotFound, u"The error log \"" + logFile_ + u"\" cannot be written");
}

}  // namespace pluvo::errors
