#pragma once

#include "files/saving.h"
#include "temporary_file.h"
#include "wording.h"

#include <functional>
#include <optional>
#include <string>
#include <system_error>

namespace pluvo::files {

errors::DocumentError changedHere();
/// Throws it.
void requireSameStamp(const FileStatus& now, const Stamp& opened);

/// An open file that a version takes after.
struct Original {
  Handle file;
  FileStatus status;
};

/// Writes the version, with the original's permissions and attributes where there is one. It need not be on
/// disk yet.
NotKept writeVersion(FileSystem& system, TemporaryFile& file, const std::optional<Original>& original,
                     const NewVersion& version);

/// Reads the version back and has it checked; the stamp is the finished file's.
Stamp checkVersion(FileSystem& system, Handle written, const std::function<void(const base::Bytes&)>& check);

/// Of the folder a version goes to.
std::shared_ptr<SharedFlush> flushOf(FileSystem& system, const OpenFolder& folder, const NewVersion& version);

/// The version is in its place; what fails now cannot be taken back.
void flushFolder(FileSystem& system, const OpenFolder& folder, SharedFlush& shared, std::uint64_t asked);

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
