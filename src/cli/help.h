#pragma once

#include "options.h"
#include "terminal.h"

#include <optional>
#include <string>

namespace pluvo::cli {

/// The whole program's help, or one command's.
std::string helpText(std::optional<Command> command, const Style& style);

std::string versionText();

}  // namespace pluvo::cli
