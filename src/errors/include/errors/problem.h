#pragma once

#include <cstdint>
#include <string_view>

namespace pluvo::errors {

/// Why a document could not be opened, changed or saved. The names are fixed: scripts rely on them.
enum class Problem : std::uint8_t {
  locked,       ///< open in another program
  readOnly,     ///< may not be written
  password,     ///< encrypted, or protected by a password that was not given
  protection,   ///< protected against editing ("protected")
  signature,    ///< digitally signed ("signed")
  damaged,      ///< not a sound document of its kind, or of another kind
  unsupported,  ///< the format cannot hold the change
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

}  // namespace pluvo::errors
