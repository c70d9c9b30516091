#pragma once

#include "base/secret_text.h"

#include <string>
#include <vector>

namespace pluvo::cli {

/// The lines of a file of passwords.
struct PasswordFile {
  std::vector<base::SecretText> passwords;
  /// A file on disk that its group or everybody may read.
  bool othersMayRead = false;
};

/// Reads the file, or standard input for "-". An empty file is one empty password. Leaves no copy in memory.
/// Throws UsageError for a file that cannot be read, is no UTF-8, or is over 1 MiB.
PasswordFile passwordsFrom(const std::string& path);

}  // namespace pluvo::cli
