#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pluvo::scanner {

/// The folders of a scan in the order of its walk, none twice through whatever links it is reached.
class FolderCollection {
 public:
  /// With the folder separator after each.
  const std::vector<std::u16string>& paths() const { return paths_; }

  /// The walk came upon a folder, so many levels below the root. Adds it where it is new, and returns whether
  /// to walk its sub-folders. They are walked where it is new, or nearer to the root than before, so that the
  /// walk may go deeper.
  bool reach(const std::u16string& path, const std::u16string& resolved, std::int32_t level) {
    const auto [at, isNew] = levels_.try_emplace(resolved, level);
    if (isNew) paths_.push_back(path);
    if (!isNew && at->second <= level) return false;
    at->second = level;
    return true;
  }

 private:
  std::vector<std::u16string> paths_;
  std::map<std::u16string, std::int32_t> levels_;
};

}  // namespace pluvo::scanner
