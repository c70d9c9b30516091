#pragma once

#include "base/bytes.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace pluvo::store {

/// Real documents of these kinds, which are no part of the project. They lie in the folder that PLUVO_CORPUS
/// names, or in shared/corpus beside a folder that this program runs in. Nothing where there are none.
inline std::vector<std::filesystem::path> corpusOf(std::initializer_list<const char*> kinds) {
  namespace fs = std::filesystem;
  std::vector<fs::path> roots;
  if (const char* named = std::getenv("PLUVO_CORPUS")) roots.emplace_back(named);
  for (fs::path folder = fs::current_path(); folder != folder.root_path(); folder = folder.parent_path())
    roots.push_back(folder.parent_path() / "shared" / "corpus");
  std::vector<fs::path> files;
  const auto root = std::ranges::find_if(roots, [&](const fs::path& it) { return fs::is_directory(it); });
  for (const char* kind : kinds) {
    if (root == roots.end() || !fs::is_directory(*root / kind)) continue;
    for (const auto& entry : fs::directory_iterator(*root / kind)) files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

inline std::vector<std::filesystem::path> wordCorpus() { return corpusOf({"docx", "docm", "dotx"}); }

constexpr const char* kNoCorpus = "no corpus: set PLUVO_CORPUS to a folder with a folder of documents a kind";

inline base::Bytes bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return base::Bytes::of({std::istreambuf_iterator<char>(file), {}});
}

}  // namespace pluvo::store
