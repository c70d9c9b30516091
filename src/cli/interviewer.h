#pragma once

#include "runs/face.h"
#include "terminal.h"

#include <cstddef>

namespace pluvo::cli {

using Reply = runs::Answer::Reply;

/// Asks a person at a terminal what to do with a block. The answers: y yes, n no, a yes to all the rest, s no
/// to the rest of the document, q stop. Remembers an "all" for the documents that follow.
class Interviewer {
 public:
  /// The number of the documents of the run.
  explicit Interviewer(std::size_t documents);

  /// Whether a person can be asked.
  static bool canAsk();

  Reply ask(const runs::Asked& asked);

 private:
  Style style_;
  std::size_t documents_;
  bool all_ = false;
};

}  // namespace pluvo::cli
