#pragma once

#include "base/bytes.h"

#include <string_view>

namespace pluvo::zip {

/// Whether the bytes begin as a compound file does: an older Office document, or an encrypted one.
bool isCompoundFile(base::ByteSpan bytes);

/// Whether a compound file's directory has a stream of this name, whatever the capitals. A damaged directory
/// has the names that are read before the damage.
bool hasStream(base::ByteSpan compoundFile, std::string_view name);

/// Whether the bytes are a compound file with an encrypted package in it: a .docx with a password to open it.
bool isEncryptedPackage(base::ByteSpan bytes);

}  // namespace pluvo::zip
