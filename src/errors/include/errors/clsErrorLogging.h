#pragma once

#include "errors/fault.h"
#include "errors/message_sink.h"

#include <any>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace pluvo::errors {

/// The current date and time for the log: "2026-11-21 14:22:33", local time.
std::u16string dateAndTime();

/// Turns a fault into a text, appends it to a log file and shows it to the user. Where the log cannot be
/// written, a line below the text says so.
///
/// A fault inside ProcessErrors itself (a box that cannot be shown) is thrown to the caller.
class clsErrorLogging {
 public:
  using Clock = std::function<std::u16string()>;

  /// Both outlive the reporter: the fault that ProcessErrors reports, and where it shows it.
  clsErrorLogging(const Fault& currentFault, MessageSink& messages, Clock clock = dateAndTime);

  /// Full path of the text log (see nameText), to which records are appended in UTF-8 with CR LF; empty: no
  /// log is written. Its folder is made with the first record.
  const std::u16string& SendErrors_ToTxtFile() const { return logFile_; }
  void SendErrors_ToTxtFile(const std::u16string& path) { logFile_ = path; }

  /// Title of the message box; empty: none is passed.
  const std::u16string& ErrorTitleCaption() const { return titleCaption_; }
  void ErrorTitleCaption(const std::u16string& caption) { titleCaption_ = caption; }

  /// 0 to 3 choose a text; any other value is the fullest.
  std::int32_t ErrorDetailLevel() const { return detailLevel_; }
  void ErrorDetailLevel(std::int32_t level) { detailLevel_ = level; }

  // Kept for the settings' sake; they change nothing.
  const std::u16string& SendErrors_ToEmail() const { return email_; }
  void SendErrors_ToEmail(const std::u16string& address) { email_ = address; }
  bool SendErrors_ToScreen() const { return toScreen_; }
  void SendErrors_ToScreen(bool value) { toScreen_ = value; }
  bool SendErrors_ToErrTable() const { return toErrorTable_; }
  void SendErrors_ToErrTable(bool value) { toErrorTable_ = value; }
  const std::u16string& ErrorTableName() const { return errorTableName_; }
  void ErrorTableName(const std::u16string& name) { errorTableName_ = name; }
  void DBUsesADO(std::any connection);
  void DBUsesDAO(bool value) { daoInUse_ = value; }

  /// Reports the current fault, with the prefix before it.
  void ProcessErrors(const std::optional<std::u16string>& prefix = std::nullopt);

 private:
  bool appendToLog() const;

  const Fault& currentFault_;
  MessageSink& messages_;
  Clock clock_;

  std::int32_t detailLevel_ = 0;
  bool toScreen_ = false;
  bool adoInUse_ = false;
  std::any connection_;
  bool daoInUse_ = false;
  bool toErrorTable_ = false;
  std::u16string errorTableName_ = u"Local_Err_Table";
  std::u16string logFile_;
  std::u16string email_;
  std::u16string report_;
  std::u16string titleCaption_;
  Fault captured_;
};

}  // namespace pluvo::errors
