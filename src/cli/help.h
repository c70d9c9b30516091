#pragma once

#include "options.h"
#include "terminal.h"

#include <optional>
#include <string>
#include <string_view>

namespace pluvo::cli {

/// The help of a command beside its options. Lines end with a line feed; examples are indented.
struct Story {
  std::string_view what;
  std::string_view examples;
};
const Story& storyOf(Command command);

/// The arguments after the command's name, as they are typed.
std::string_view usageOf(std::optional<Command> command);
/// The exit statuses of a command, in one indented line.
std::string_view exitStatusOf(std::optional<Command> command);

/// The whole program's help, or one command's.
std::string helpText(std::optional<Command> command, const Style& style);

std::string versionText();

}  // namespace pluvo::cli
