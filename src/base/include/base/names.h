#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace pluvo::base {

/// A file's name or path is bytes, and a text everywhere else: its UTF-8 as UTF-16. A byte that is no UTF-8
/// becomes the lone surrogate 0xDC00 + byte, so that any bytes come back as they were.
std::u16string nameText(std::string_view bytes);
/// The bytes of a name. Lone surrogates that stand for no byte are written as if they were characters.
std::string nameBytes(std::u16string_view name);

/// The path as the machine's own calls take it, from a text as nameText makes them. On Windows it may be as
/// long as the file system allows, and names are taken as they are, lone surrogates included.
std::filesystem::path machinePath(std::u16string_view path);

/// The text of a path.
std::u16string machineText(const std::filesystem::path& path);

}  // namespace pluvo::base
