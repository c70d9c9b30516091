#pragma once

#include "runs/plan.h"
#include "runs/slice_keys.h"

#include <string>
#include <vector>

namespace pluvo::cli {

/// The paths in the file that --files-from names, each ended by a line end or a zero byte. Empty ones are
/// passed over. Throws UsageError.
std::vector<std::string> namesFrom(const std::string& path, bool nullEnded);

/// Of these those that belong to a slice, of a list that may be larger than the memory, and what all of it
/// is.
std::vector<std::string> namesOfSlice(const std::string& path, bool nullEnded, runs::SliceKeys& keys,
                                      runs::ListDigest& list);

}  // namespace pluvo::cli
