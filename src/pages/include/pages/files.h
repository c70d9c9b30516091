#pragma once

#include "pages/program.h"

#include <filesystem>
#include <string>

/// Files of a build. Whatever cannot be read or written is thrown as std::runtime_error.
namespace pluvo::pages {

std::string read(const std::filesystem::path& path);
void write(const std::filesystem::path& path, const std::string& text);

/// Into bash/, zsh/ and fish/ below the folder, by the names under which the shells look for them.
void writeCompletions(const std::filesystem::path& folder, const Program& program);

}  // namespace pluvo::pages
