#pragma once

#include "files/file_system.h"

#include <string>
#include <string_view>
#include <utility>

namespace pluvo::files {

/// "folder/" of "folder/name", nothing of "name".
inline std::string_view folderPrefixOf(std::string_view path) { return path.substr(0, path.rfind('/') + 1); }

inline std::string_view nameIn(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// The folder as a path of its own.
inline std::string folderOf(std::string_view path) {
  const std::string_view prefix = folderPrefixOf(path);
  return prefix.empty() ? "." : std::string(prefix);
}

/// A file by its name in its folder, which stays open.
struct Located {
  Located(FileSystem& system, std::string pathWithoutLinks)
      : path(std::move(pathWithoutLinks)), folder(system, folderOf(path)), name(nameIn(path)) {}
  Located(std::string itsPath, OpenFolder itsFolder)
      : path(std::move(itsPath)), folder(std::move(itsFolder)), name(nameIn(path)) {}

  Place place() const { return folder.at(name); }
  std::string pathBeside(const std::string& other) const { return std::string(folderPrefixOf(path)) + other; }

  std::string path;  ///< for the user, and for records
  OpenFolder folder;
  std::string name;
};

}  // namespace pluvo::files
