#pragma once

#include <string>
#include <string_view>

namespace pluvo::cli {

/// A file's bytes, or standard input's for "-". Throws UsageError, which names the option, for what cannot be
/// read or is over 64 MiB.
std::string bytesFrom(const std::string& path, std::string_view option);

/// A text from the command line: UTF-8 to UTF-16, every line end (CR LF or LF) to one paragraph mark. The
/// option is named in the UsageError thrown for bytes that are not UTF-8.
std::u16string textFromArgument(const std::string& bytes, std::string_view option);

/// The same from a file, or from standard input for "-". A byte-order mark and the one line end at the very
/// end are not part of the text.
std::u16string textFromFile(const std::string& path, std::string_view option);

}  // namespace pluvo::cli
