#pragma once

#include "files/file_system.h"
#include "runs/outcome.h"
#include "runs/selection.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::runs {

/// A document to work on, or why there is none under that name.
struct NamedDocument {
  std::string path;   ///< as typed, or as found below the folder typed
  std::string place;  ///< in another folder: the file's name, or the tree it was found in
  std::optional<Failure> failure;
  /// Of the folder that its path begins with, where links below that are not to be followed.
  std::optional<std::size_t> folderLength = std::nullopt;
  std::string key = {};  ///< its absolute path without links, in a slice
};

enum class Reason : std::uint8_t {
  notNamed,  ///< by a mask
  otherType,
  attributesFile,
  writtenByRun,
  unchanged,
  otherName,
  excluded,
  link,
  hiddenFolder,
  tooDeep,
  stopped,
  missing,  ///< in a report on slices
};
/// As it stands in lists: "a link".
std::string_view wordsOf(Reason reason);

/// A file or folder that was found and not taken, or not come to.
struct LeftOut {
  std::string path;
  Reason reason;
};

/// Face::sentenceFor.
using Sentences = std::function<std::string(Trouble)>;

struct Listing {
  std::vector<NamedDocument> documents;
  std::vector<LeftOut> leftOut;
};

/// The documents of a selection, in the order of its paths and, below a folder, folder by folder in byte
/// order. Each comes once, whatever its names. Links below a folder are followed only where the selection
/// says so. Files at the avoided paths (the run's own output) are left out.
Listing listDocuments(files::FileSystem& system, const Selection& selection,
                      const std::vector<std::string>& avoided, const Sentences& sentences);

/// A path as a list takes it so that the document's place stays the same: "/./" stands before the place.
std::string listedPath(const NamedDocument& document);

}  // namespace pluvo::runs
