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

/// Opens the input that bytesFrom reads, with the same refusals.
File openGiven(const std::string& path, std::string_view option);

/// A file's bytes, or those of an open input: standard input for "-", and "/dev/fd/63", which a shell
/// passes for another command's output. Throws UsageError, which names the option, for unreadable files,
/// for pipes and devices, which may never end, and for input over 64 MiB.
std::string bytesFrom(const std::string& path, std::string_view option);
/// The same of a file and nothing else.
std::string bytesOfFile(const std::string& path, std::string_view option);

/// A text in UTF-8 from bytesFrom. A byte-order mark and the one line end at the very end are not part of it.
/// Throws UsageError for bytes that are not UTF-8.
std::string textFromFile(const std::string& path, std::string_view option);

}  // namespace pluvo::cli
