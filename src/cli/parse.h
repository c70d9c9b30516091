#pragma once

#include "options.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::cli {

struct TypedCommandLine {
  std::optional<Command> command;
  TypedOptions options;
  std::optional<std::string> saveTo;  ///< of pluvo save FILE COMMAND ...: the command is the one after it
  std::vector<std::string> paths;     ///< bytes, as typed
  std::vector<std::string> words;     ///< all of it, as typed
};

/// Takes the arguments apart (without the program's name). Options and paths may stand in any order, "--"
/// ends the options, a long option may be shortened while it stays unmistakable. Touches nothing outside.
/// Throws UsageError for options that are unknown, incomplete, given twice, or no use to the command.
TypedCommandLine parse(const std::vector<std::string>& arguments);

}  // namespace pluvo::cli
