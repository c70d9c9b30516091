#pragma once

#include "files/saving.h"
#include "temporary_file.h"
#include "wording.h"

#include <string>
#include <system_error>

namespace pluvo::files {

/// Throws DocumentError changed.
void requireSameStamp(const FileStatus& now, const Stamp& opened);

/// Writes the version, with what the original has where there is one, and reads it back; the stamp is the
/// finished file's. It need not be on disk yet.
Stamp writeVersion(FileSystem& system, TemporaryFile& file, const OpenFile* original,
                   const NewVersion& version);

/// The version is in its place; what fails now cannot be taken back.
void flushFolder(FileSystem& system, const std::string& file);

/// Calls that fail are told in the user's terms.
template <class Work>
auto saving(Work work) {
  try {
    return work();
  } catch (const std::system_error& failure) {
    throw savingFailed(failure);
  }
}

}  // namespace pluvo::files
