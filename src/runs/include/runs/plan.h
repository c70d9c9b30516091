#pragma once

#include "base/secret_text.h"
#include "engine/request.h"
#include "runs/selection.h"

#include <optional>
#include <string>
#include <vector>

namespace pluvo::runs {

/// A list of documents, whatever the order of its names.
struct ListDigest {
  std::uint64_t count = 0;
  std::uint64_t names = 0;  ///< of the names as they were listed
  std::uint64_t keys = 0;   ///< of the files that they lead to
};

/// A run: its operations, its documents, and its options.
struct Plan {
  std::vector<engine::Request> requests;  ///< one or more, in the order in which each document gets them
  Selection selection;
  /// Open encrypted documents and lift protections, tried in this order; without any, such documents are left
  /// alone.
  std::vector<base::SecretText> passwords;
  std::string
      encoding;  ///< of plain texts that do not say it, as knownEncoding gives it; empty: told from the text

  bool dryRun = false;
  bool keepGoing = false;  ///< changes that are refused are left out, and the others are saved
  bool journal = true;     ///< originals are kept for an undo
  std::optional<std::string> journalFolder;  ///< where, below "pluvo"; else the user's folder for states
  /// Of a run whose slices, of which the selection has one, are one run for the journal; empty for none.
  std::string runName;
  std::optional<ListDigest> list;  ///< of the list of all slices' documents
  std::optional<std::string> backupSuffix;
  std::optional<std::string> outputFolder;
  int jobs = 1;

  bool looksElsewhere =
      true;  ///< for texts that requests do not reach; it costs, and is told in the outcomes

  std::optional<std::string> report;  ///< a file whose name ends in .html, .htm, .csv or .json
  bool reportsEncrypted = true;       ///< it has the blocks of encrypted documents, too: their text in plain
  bool overwriteReport = false;       ///< whatever lies there

  std::string command;  ///< the run's name in its report and its journal

  bool findsOnly() const;
  /// Whether some request works elsewhere than in main text.
  bool worksBeyondMainText() const;
  /// Whether documents are replaced.
  bool changesInPlace() const { return !findsOnly() && !dryRun && !outputFolder; }
};

/// The encoding's name as a Plan has it. Throws errors::DocumentError where it is not known.
std::string knownEncoding(const std::string& name);

}  // namespace pluvo::runs
