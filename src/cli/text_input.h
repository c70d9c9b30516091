#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::cli {

struct CloseFile {
  void operator()(std::FILE* file) const {
    if (file != stdin) (void)std::fclose(file);
  }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Opens what bytesFrom reads, and refuses what it refuses.
File openGiven(const std::string& path, std::string_view option);

/// A file's bytes, or those of what is open already: standard input for "-", and "/dev/fd/63", which a shell
/// puts for what another command prints. Throws UsageError, which names the option, for what cannot be read,
/// for pipes and devices, which may never end, and for what is over 64 MiB.
std::string bytesFrom(const std::string& path, std::string_view option);
/// The same of a file and nothing else.
std::string bytesOfFile(const std::string& path, std::string_view option);

/// A text in UTF-8 from bytesFrom. A byte-order mark and the one line end at the very end are not part of it.
/// Throws UsageError for bytes that are not UTF-8.
std::string textFromFile(const std::string& path, std::string_view option);

}  // namespace pluvo::cli
