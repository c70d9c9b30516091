#pragma once

#include "engine/request.h"
#include "listing/selection.h"
#include "parse.h"
#include "password_file.h"

#include <optional>
#include <string>
#include <vector>

namespace pluvo::cli {

enum class ProgressLine { automatic, always, never };

/// A run: what is done, to which documents, how, and what is told of it.
struct Plan {
  std::vector<engine::Request> requests;  ///< one or more, in the order in which each document gets them
  Selection selection;
  /// Lift protections, tried in this order; without any protected documents are left alone.
  PasswordFile passwords;
  std::string passwordFile;  ///< where they are from
  std::string encoding;      ///< of plain texts that do not say it; empty: told from the text

  bool confirm = false;
  bool dryRun = false;
  bool keepGoing = false;
  bool journal = true;
  std::optional<std::string> backupSuffix;
  std::optional<std::string> outputFolder;
  int jobs = 1;

  std::optional<std::string> report;
  bool overwriteReport = false;
  bool strict = false;
  bool json = false;
  bool quiet = false;
  ProgressLine progress = ProgressLine::automatic;

  std::string command;  ///< as typed, for the report and the journal

  bool findsOnly() const;
  /// Whether documents are replaced.
  bool changesInPlace() const { return !findsOnly() && !dryRun && !outputFolder; }
};

/// The requests saved in a file. Throws UsageError.
std::vector<engine::Request> requestsIn(const std::string& path);

/// What was typed, made out. Reads the files that hold texts or saved requests and nothing else. Throws
/// UsageError.
Plan planFrom(const TypedCommandLine& line);

}  // namespace pluvo::cli
