#pragma once

#include "files/file_system.h"

#include <string>

namespace pluvo::files {

/// A file's bytes, and the state of the file that they are from.
struct FileContent {
  base::Bytes bytes;
  Stamp stamp;
};

/// Reads a regular file: a small one into memory, a large one mapped. A user of mapped bytes sees what
/// others do to the file meanwhile, and compares the stamps before relying on them (see saving.h).
///
/// Throws errors::DocumentError. io: a missing or unreadable file, a folder, a pipe and the like, for which
/// it does not wait. changed: a file that was written while it was read.
FileContent readFile(FileSystem& system, const Place& place);
/// The same of a file in a folder or below it, whose path is the path's beginning of that length, with its
/// "/". A link after that is not followed, as another program may have put it there since the folder was
/// read: then changed.
FileContent readFileBelow(FileSystem& system, const std::string& path, std::size_t folderLength);
/// The same of an open file; a call that fails is a std::system_error.
FileContent readFile(FileSystem& system, Handle file);

/// Files from this size on are mapped.
inline constexpr std::uint64_t kMappedFrom = std::uint64_t{256} * 1024;

}  // namespace pluvo::files
