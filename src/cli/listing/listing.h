#pragma once

#include "files/file_system.h"
#include "listing/selection.h"
#include "outcome.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::cli {

/// A document to work on, or why there is none under that name.
struct NamedDocument {
  std::string path;   ///< as typed, or as found below what was typed
  std::string place;  ///< in the folder that --output names: the file's name, or the tree it was found in
  std::optional<Failure> failure;
  /// Of the folder that its path begins with, where links below that are not to be followed.
  std::optional<std::size_t> folderLength = std::nullopt;
};

/// A file or folder that was found and not taken.
struct LeftOut {
  std::string path;
  std::string_view reason;
};

inline constexpr std::string_view kWrittenByRun = "written by this run";
inline constexpr std::string_view kLink = "a link";

struct Listing {
  std::vector<NamedDocument> documents;
  std::vector<LeftOut> leftOut;
};

/// The documents of a selection, in the order of its paths and, below a folder, folder by folder in byte
/// order; each once, however often and under whatever names it is given. Links below a folder are followed
/// only where the selection says so. What lies at the avoided paths (the run's own output) is left out.
/// Throws UsageError where the list of names cannot be read.
Listing listDocuments(files::FileSystem& system, const Selection& selection,
                      const std::vector<std::string>& avoided);

/// A path as --files-from takes it so that the document's place stays the same: "/./" stands before the
/// place.
std::string listedPath(const NamedDocument& document);

}  // namespace pluvo::cli
