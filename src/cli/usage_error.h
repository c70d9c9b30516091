#pragma once

#include <stdexcept>

namespace pluvo::cli {

/// The command line asks for something that cannot be done: one sentence, with the remedy.
/// Nothing has been read or written when it is thrown.
class UsageError : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

}  // namespace pluvo::cli
