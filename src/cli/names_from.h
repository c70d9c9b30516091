#pragma once

#include <string>
#include <vector>

namespace pluvo::cli {

/// The paths in the file that --files-from names, each ended by a line end or a zero byte. Empty ones are
/// passed over. Throws UsageError.
std::vector<std::string> namesFrom(const std::string& path, bool nullEnded);

}  // namespace pluvo::cli
