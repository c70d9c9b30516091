#pragma once

#include "outcome.h"
#include "request.h"
#include "terminal.h"

#include <cstdint>
#include <string>

namespace pluvo::cli {

enum class Answer : std::uint8_t { yes, no, stop };

/// Asks a person at a terminal what to do with a block: y yes, n no, a yes to all the rest, q stop. Remembers
/// an "all" and a "stop" for the documents that follow.
class Interviewer {
 public:
  explicit Interviewer(const Request& request);

  /// Whether there is somebody to ask.
  static bool canAsk();

  Answer ask(const std::string& path, const BlockReport& block);
  bool stopped() const { return stopped_; }

 private:
  Style style_;
  std::string question_;
  bool all_ = false;
  bool stopped_ = false;
};

}  // namespace pluvo::cli
