#pragma once

#include <string>
#include <vector>

namespace pluvo::desktop {

/// The documents opened last, latest first; those that are gone are left out.
std::vector<std::string> recentFiles();
void rememberRecent(const std::string& path);

}  // namespace pluvo::desktop
