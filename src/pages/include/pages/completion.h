#pragma once

#include "pages/program.h"

#include <string>

/// The shells' proposals while a command line is typed: commands, the options of the command, values,
/// documents.
namespace pluvo::pages {

/// Needs the functions of bash-completion.
std::string bashCompletion(const Program& program);
std::string zshCompletion(const Program& program);
std::string fishCompletion(const Program& program);

}  // namespace pluvo::pages
