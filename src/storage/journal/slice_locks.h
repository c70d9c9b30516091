#pragma once

#include "run_folder.h"

#include <memory>
#include <string>

/// The locks by which slices of one run, and its undo, keep out of each other's way.
namespace pluvo::journal {

/// The lock that slices share and an undo holds alone; nothing where it is held otherwise, or was removed.
std::unique_ptr<files::OpenFile> holdNamed(files::FileSystem& system, const OwnFolder& run, files::Hold hold);

/// The lock of a slice that is not going on, with this program's mark in it. Throws DocumentError (locked)
/// where it is going on, be it on another machine whose lock would not be noticed.
std::unique_ptr<files::OpenFile> holdSlice(files::FileSystem& system, const OwnFolder& slice,
                                           const std::string& what);
/// Whether some program works on it.
bool isGoing(files::FileSystem& system, const OwnFolder& slice);

}  // namespace pluvo::journal
