#pragma once

#include "pages/program.h"

#include <map>
#include <string>
#include <string_view>

/// Parts of manual pages, in the macros of man(7).
namespace pluvo::pages {

/// Plain text as the formatter takes it: signs that mean something to it mean themselves.
std::string roff(std::string_view text);

/// A paragraph for each option; headings are those of its groups, and each option says what it does not go
/// with.
std::string optionList(const Program& program);
/// The same for options that are keys of a file.
std::string keyList(const Program& program);
/// A paragraph for each command: its form and its effect.
std::string commandList(const Program& program);
/// The examples of all commands.
std::string exampleList(const Program& program);
/// Examples as they stand in Command::examples.
std::string examples(std::string_view lines);

/// The template with each @NAME@ replaced by its part. Throws std::runtime_error for a name without a part
/// and for a part without its name.
std::string filled(std::string_view text, const std::map<std::string, std::string>& parts);

}  // namespace pluvo::pages
