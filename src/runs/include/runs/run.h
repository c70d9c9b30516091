#pragma once

#include "files/file_system.h"
#include "runs/face.h"
#include "runs/plan.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace pluvo::runs {

/// Why a run cannot begin as it is planned. No document has been opened.
class CannotBegin : public std::runtime_error {
 public:
  enum class Reason : std::uint8_t {
    outputFolder,
    stateFolder,    ///< there is no known folder for the originals
    journal,        ///< they cannot be kept there
    reportKind,     ///< its name has no ending that says what kind of report it is
    reportForeign,  ///< its place is taken by something that is no report
    report,
    rest,  ///< the list of documents to run again
  };
  CannotBegin(Reason reason, const std::string& sentence, std::string path = {})
      : std::runtime_error(sentence), reason_(reason), path_(std::move(path)) {}
  CannotBegin(Reason reason, const errors::DocumentError& error)
      : std::runtime_error(error.what()), reason_(reason), happened_(error.happened()) {}
  Reason reason() const { return reason_; }
  const std::string& path() const { return path_; }
  /// See Failure.
  const std::string& happened() const { return happened_; }

 private:
  Reason reason_;
  std::string path_;
  std::string happened_;
};

/// The documents that a run did not work on to their end. Of a slice there is no list: when it is run again,
/// the journal knows them.
struct Unfinished {
  std::size_t documents = 0;
  std::string list = {};  ///< a file with their paths, each ended by a zero byte; empty where there is none
  std::string problem = {};  ///< why there is none
};

/// How a run ended.
struct Ended {
  Totals totals;
  std::exception_ptr thrown;             ///< by an observer, which ended the run before its end could be told
  bool isCancelled = false;              ///< by the face
  bool isCutShort = false;               ///< by an answer; then the document it was about is unfinished
  std::optional<Unfinished> unfinished;  ///< of a run that came to no regular end
  std::optional<std::string> reportProblem = std::nullopt;  ///< why there is no report, or not in its place
  std::string undoName = {};  ///< under which the run can be taken back; empty where it kept no original
  std::uint64_t notKept = 0;  ///< documents changed whose originals found no room
};

/// Works on every document of the plan, several at the same time unless questions are asked, and tells the
/// face each outcome. A document that fails is told of and the rest go on. Throws CannotBegin before anything
/// is opened.
Ended run(const Plan& plan, Face& face, files::FileSystem& system);

}  // namespace pluvo::runs
