#pragma once

#include "files/file_system.h"
#include "runs/selection.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace pluvo::runs {

/// Tells documents apart by their paths, and which of them belong to a slice. The slice of a document follows
/// from its absolute path alone, not from the list. Links of the folder are resolved, so that a document has
/// one slice through whatever folders it is named.
class SliceKeys {
 public:
  SliceKeys(files::FileSystem& system, Slice slice) : system_(system), slice_(slice) {}

  /// The path without links but one at its end.
  std::string keyOf(const std::string& path);
  bool takes(const std::string& key) const;
  /// Whether another name of the document may belong to another slice.
  bool isLink(const std::string& path, const std::string& key) const;

 private:
  files::FileSystem& system_;
  const Slice slice_;
  std::unordered_map<std::string, std::string> folders_;  ///< as named, and without links
};

/// Of bytes, the same on every machine.
std::uint64_t stableHash(std::string_view bytes);

}  // namespace pluvo::runs
