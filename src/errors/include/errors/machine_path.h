#pragma once

#include <filesystem>
#include <string_view>

namespace pluvo::errors {

/// The path as the machine's own calls take it, from a text as nameText makes them. On Windows it may be as
/// long as the file system allows, and names are taken as they are, lone surrogates included.
std::filesystem::path machinePath(std::u16string_view path);

/// The text of a path.
std::u16string machineText(const std::filesystem::path& path);

}  // namespace pluvo::errors
