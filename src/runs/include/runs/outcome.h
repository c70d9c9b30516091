#pragma once

#include "document/place.h"
#include "elsewhere/elsewhere.h"
#include "engine/request.h"
#include "errors/document_error.h"
#include "files/saving.h"
#include "runs/excerpt.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace pluvo::runs {

/// A problem of a document or folder for which only the face has advice.
enum class Trouble : std::uint8_t {
  noName,            ///< its path is empty
  isFolder,          ///< it is a folder, and folders are not looked through
  placeTaken,        ///< an earlier document goes to the same place in the output folder
  folderRefused,     ///< the user may not read a folder
  notOpened,         ///< it is encrypted, and none of the passwords opens it
  wrongPasswords,    ///< none of the plan's passwords lifts its protection
  notReleased,       ///< none of the plan's passwords is that for changing it
  documentsHashing,  ///< trying more passwords would cost more than one document may
  runsHashing,       ///< trying passwords has cost as much as a run may
};

struct Failure {
  errors::Problem problem = errors::Problem::io;
  std::string message;  ///< a sentence for the user, without the document's name
  /// The message without its advice, where that is worded for a command line; else empty.
  std::string happened = {};
};

/// The counts of one place, of a document or of all documents.
struct PlaceCounts {
  std::int64_t found = 0;
  std::int64_t operated = 0;
  std::int64_t skipped = 0;
  /// Of one document: how many blocks were found in each story there, by its number (see
  /// document::StoryName). Empty for main text.
  std::map<std::size_t, std::int64_t> stories = {};
};
/// By document::Place.
using CountsByPlace = std::array<PlaceCounts, document::kPlaces>;

/// The outcome of one document.
struct Outcome {
  std::string path;  ///< bytes, as the user named it
  std::int64_t found = 0;
  std::int64_t operated = 0;  ///< operations carried out; 0 for find
  std::int64_t skipped = 0;
  std::int64_t refused = 0;  ///< operations refused and passed over
  std::int64_t tooFar = 0;   ///< beginnings with an ending that was too far away
  /// The same of each place; only where requests work elsewhere than in main text.
  std::optional<CountsByPlace> places = std::nullopt;
  bool changed = false;   ///< an operation made a difference
  bool cutShort = false;  ///< the run was ended in it, so that it is not done with
  bool saved = false;
  bool recommendsReading = false;  ///< it asks to be read rather than changed
  bool isTemplate = false;         ///< new documents are made from it
  bool earlier = false;  ///< it was done with by an earlier attempt at this slice, and was left alone now
  std::string savedAs;   ///< the new document, where the original stays; else empty
  std::string backup;    ///< where the original is kept, else empty
  files::NotKept notKept = {};
  std::string encoding;            ///< by which a plain text was read, else empty
  bool guessed = false;            ///< the encoding was told from how the text reads
  elsewhere::Elsewhere elsewhere;  ///< texts that no request reached
  std::optional<Failure> failure;

  /// The number of operations in a saved document, or in one that a dry run would save.
  std::int64_t lasting() const { return changed && !failure ? operated : 0; }
};

/// The message on a document, as every face tells it: "letter.docx: locked: " and the sentence.
std::string failureLine(const std::string& path, const Failure& failure);

/// The sums over all documents.
struct Totals {
  std::int64_t files = 0;
  std::int64_t found = 0;
  std::int64_t operated = 0;  ///< in the documents that are counted as changed
  std::int64_t skipped = 0;
  std::int64_t tooFar = 0;
  std::optional<CountsByPlace> places;  ///< as in an Outcome, without stories
  std::int64_t changed = 0;             ///< documents saved; with --dry-run, those that would be
  std::int64_t failed = 0;              ///< but for temporary files, which are skipped
  std::int64_t leftOut = 0;             ///< files and folders that were found and not taken
  std::int64_t links = 0;               ///< among them
  std::int64_t earlier = 0;             ///< documents done with by earlier attempts at this slice
  std::int64_t unfinished = 0;          ///< documents that a run cut short did not work on to their end
  elsewhere::Elsewhere elsewhere;
  std::int64_t notReached = 0;  ///< documents that it is about

  void add(const Outcome& outcome);
};

/// "5 blocks", and where requests work elsewhere than in main text "5 blocks (3 in main text, 2 in headers)".
std::string foundInWords(std::int64_t found, const std::optional<CountsByPlace>& places);

/// One block as it was found and as an operation left it.
struct BlockReport {
  const engine::Request* request = nullptr;  ///< one of the plan's
  std::string place;                         ///< "header 2", "footnote 4"; empty for main text
  std::int32_t paragraph = 0;                ///< it begins in, from 1, as the document was before the pass
  Excerpt before;
  std::optional<Excerpt> after;  ///< nothing for find
  bool deleted = false;          ///< it lies in tracked deletions
  bool refused = false;
  bool skipped = false;  ///< the user had it left as it is
};

}  // namespace pluvo::runs
