#pragma once

#include "errors/problem.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace pluvo::errors {

/// A document that could not be opened or saved. The message is UTF-8 for the user and says what is wrong,
/// where, and what to do; it does not repeat the file's name. What to do may depend on how the document came
/// to be saved: then it stands apart, as a command's user has it.
class DocumentError : public std::runtime_error {
 public:
  DocumentError(Problem problem, std::string_view message);
  DocumentError(Problem problem, std::string_view happened, std::string_view advice);
  Problem problem() const { return problem_; }
  /// The message without the advice; empty where that does not stand apart.
  const std::string& happened() const { return happened_; }

 private:
  Problem problem_;
  std::string happened_;
};

}  // namespace pluvo::errors
