#pragma once

#include <optional>
#include <string>

/// Text files as Word keeps them: UTF-8, each paragraph ended by CR LF.
namespace pluvo::stand_in::disk {

std::optional<std::u16string> read(const std::u16string& path);
bool write(const std::u16string& path, const std::u16string& text);
bool isReadOnly(const std::u16string& path);

}  // namespace pluvo::stand_in::disk
