#pragma once

#include "files/file_system.h"
#include "paths.h"

#include <string>

namespace pluvo::files {

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
