#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace pluvo::cli {

/// The command line asks for something that cannot be done: one sentence that says what to do instead.
/// Nothing has been read or written when it is thrown.
class UsageError : public std::runtime_error {
 public:
  /// The option is the one that is wrong, as "--apart"; none where one is missing.
  explicit UsageError(const std::string& sentence, std::string option = {})
      : std::runtime_error(sentence), option_(std::move(option)) {}
  const std::string& option() const { return option_; }

 private:
  std::string option_;
};

}  // namespace pluvo::cli
