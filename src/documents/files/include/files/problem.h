#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace pluvo::files {

/// Why a document could not be opened, changed or saved. The names are fixed: scripts rely on them.
enum class Problem {
  locked,       ///< open in another program
  readOnly,     ///< may not be written
  password,     ///< encrypted, or protected by a password that was not given
  protection,   ///< protected against editing ("protected")
  signature,    ///< digitally signed ("signed")
  damaged,      ///< not a sound document of its kind, or of another kind
  unsupported,  ///< the format has no place for what was asked
  encoding,     ///< text that the file's encoding cannot hold
  tooLarge,
  temporary,  ///< a word processor's own temporary file
  changed,    ///< the file changed while it was open
  refused,    ///< an operation on a block was refused
  io,         ///< reading, writing, no such file, disk full
};

/// The fixed name: "locked", "read-only", "password", "protected", "signed", "damaged", "unsupported",
/// "encoding", "too-large", "temporary", "changed", "refused", "io".
std::string_view nameOf(Problem problem);

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

}  // namespace pluvo::files
