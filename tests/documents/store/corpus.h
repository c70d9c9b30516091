#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::store {

/// Real documents of one kind, which are no part of the project: in the folder that PLUVO_CORPUS names, or in
/// shared/corpus beside a folder that this program runs in. Nothing where there are none.
inline std::vector<std::filesystem::path> corpusOf(const std::string& kind) {
  namespace fs = std::filesystem;
  std::vector<fs::path> roots;
  if (const char* named = std::getenv("PLUVO_CORPUS")) roots.emplace_back(named);
  for (fs::path folder = fs::current_path(); folder != folder.root_path(); folder = folder.parent_path())
    roots.push_back(folder.parent_path() / "shared" / "corpus");
  std::vector<fs::path> files;
  for (const fs::path& root : roots) {
    if (!fs::is_directory(root / kind)) continue;
    for (const auto& entry : fs::directory_iterator(root / kind)) files.push_back(entry.path());
    break;
  }
  std::ranges::sort(files);
  return files;
}

}  // namespace pluvo::store
