#pragma once

#include <string>
#include <string_view>

namespace pluvo::files {

/// "folder/" of "folder/name", nothing of "name".
inline std::string_view folderPrefixOf(std::string_view path) { return path.substr(0, path.rfind('/') + 1); }

inline std::string_view nameIn(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// The folder as a path of its own.
inline std::string folderOf(std::string_view path) {
  const std::string_view prefix = folderPrefixOf(path);
  return prefix.empty() ? "." : std::string(prefix);
}

}  // namespace pluvo::files
