#include "folder_maker.h"

#include "files/problem.h"

#include <cerrno>
#include <system_error>

namespace pluvo::cli {

void makeFolders(files::FileSystem& system, const std::string& folder) {
  if (folder.empty() || system.exists(folder)) return;
  const std::size_t above = folder.find_last_of('/');
  if (above != std::string::npos) makeFolders(system, folder.substr(0, above));
  try {
    system.createFolder(folder);
  } catch (const std::system_error& refused) {
    // Another job was quicker, or "a//b".
    if (refused.code().value() == EEXIST) return;
    throw files::DocumentError(files::Problem::io, "The folder \"" + folder + "\" cannot be made (" +
                                                       refused.code().message() + ").");
  }
}

}  // namespace pluvo::cli
