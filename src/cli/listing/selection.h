#pragma once

#include "listing/path_mask.h"
#include "options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::cli {

/// Which documents a run works on. All names and paths are bytes.
struct Selection {
  std::vector<std::string> paths;
  std::optional<std::string> filesFrom;  ///< a file with more paths; "-" is standard input
  bool nullEnded = false;                ///< they end with a zero byte, not with a line

  bool recursive = false;
  bool follow = false;                    ///< links found in folders
  std::int16_t levels = 32000;            ///< of folders below those named
  std::vector<std::string> types;         ///< without dots, in small letters; of files found in folders
  std::vector<PathMask> masks;            ///< of files found in folders; none: every file
  std::vector<PathMask> excluded;         ///< files and folders
  std::optional<std::int64_t> newerThan;  ///< in seconds since 1970

  bool several() const { return paths.size() > 1 || recursive || filesFrom; }
};

/// Throws UsageError.
Selection selectionFrom(const TypedOptions& typed, std::vector<std::string> paths);

}  // namespace pluvo::cli
