#pragma once

#include "parse.h"
#include "password_file.h"
#include "runs/plan.h"

#include <optional>
#include <string>
#include <vector>

namespace pluvo::cli {

enum class ProgressLine { automatic, always, never };

/// A run, the contents of files named for it, and its output.
struct Plan : runs::Plan {
  std::string passwordFile;  ///< where the passwords are from
  bool othersMayReadPasswords = false;
  std::optional<std::string> filesFrom;  ///< a file with more paths; "-" is standard input
  bool nullEnded = false;                ///< they end with a zero byte, not with a line
  bool isOfSavedRequests = false;        ///< that were read from a file
  bool confirm = false;                  ///< each block of the requests that change something

  bool strict = false;  ///< what requests do not reach makes the run a failure
  bool json = false;
  bool quiet = false;
  ProgressLine progress = ProgressLine::automatic;
};

/// The requests saved in a file. Throws UsageError.
std::vector<engine::Request> requestsIn(const std::string& path);

/// The plan that the command line means. Reads the files that hold texts or saved requests and nothing else.
/// Throws UsageError.
Plan planFrom(const TypedCommandLine& line);

}  // namespace pluvo::cli
