#pragma once

#include "runs/path_mask.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pluvo::runs {

/// The types of documents that are taken from folders if none are named, without dots.
std::vector<std::string> documentTypes();
/// And all that any known format goes by, "" for names without a type.
std::vector<std::string> everyType();

/// One of the parts that documents are divided into, from 1.
struct Slice {
  std::uint32_t number = 1;
  std::uint32_t count = 1;
};

/// Which documents a run works on. All names and paths are bytes.
struct Selection {
  std::vector<std::string> paths;
  std::optional<std::vector<std::string>> listed;  ///< more paths, from a list

  bool recursive = false;
  bool follow = false;          ///< links found in folders
  std::int16_t levels = 32000;  ///< of folders below those named
  std::vector<std::string> types =
      documentTypes();                    ///< without dots, in small letters; of files found in folders
  std::vector<PathMask> masks;            ///< of files found in folders; none: every file
  std::vector<PathMask> excluded;         ///< files and folders
  std::optional<std::int64_t> newerThan;  ///< in seconds since 1970
  /// Of all these those of one slice (runs/slice_keys.h). A link to a document fails, since the document may
  /// belong to another.
  std::optional<Slice> slice;

  bool several() const { return paths.size() > 1 || recursive || listed; }
};

}  // namespace pluvo::runs
