#pragma once

#include "outcome.h"
#include "terminal.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace pluvo::cli {

enum class Answer : std::uint8_t { yes, no, restOfDocument, stop };

/// Asks a person at a terminal what to do with a block: y yes, n no, a yes to all the rest, s no
/// to the rest of the document, q stop. Remembers
/// an "all" and a "stop" for the documents that follow.
class Interviewer {
 public:
  /// The number of the documents of the run.
  explicit Interviewer(std::size_t documents);

  /// Whether there is somebody to ask.
  static bool canAsk();

  /// To be called before each document.
  void nextDocument() { ++document_; }
  Answer ask(const std::string& path, const BlockReport& block);
  bool stopped() const { return stopped_; }

 private:
  Style style_;
  std::size_t documents_;
  std::size_t document_ = 0;
  bool all_ = false;
  bool stopped_ = false;
};

}  // namespace pluvo::cli
