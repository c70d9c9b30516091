#pragma once

#include "pages/program.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::pages {

/// "a b c".
std::string joined(const std::vector<std::string>& words, std::string_view between = " ");

/// "-b", "--begin".
std::vector<std::string> spellings(const Option& option);
/// Spellings of the options after which the next word is their value.
std::vector<std::string> takingNextWord(const Program& program);
/// Names of the commands that work on documents and on nothing else.
std::vector<std::string> commandsOnDocuments(const Program& program);
/// The purpose of an option in a few words: its help up to the first pause.
std::string shortHelp(const Option& option);
/// The name of a shell's function: "_pluvo_desktop".
std::string functionName(const Program& program, std::string_view prefix);

/// Prints the names of the runs that "pluvo undo" takes back, one a line.
inline constexpr std::string_view kRuns =
    "pluvo undo --list 2>/dev/null | sed -n 's/^\\([0-9][0-9-]*\\)  .*/\\1/p'";

}  // namespace pluvo::pages
