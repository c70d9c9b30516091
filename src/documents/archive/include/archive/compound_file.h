#pragma once

#include "files/bytes.h"

#include <string_view>

namespace pluvo::archive {

/// Whether the bytes begin as a compound file does: an older Office document, or an encrypted one.
bool isCompoundFile(files::ByteSpan bytes);

/// Whether a compound file's directory has a stream of this name, whatever the capitals. A damaged directory
/// has the names that are read before the damage.
bool hasStream(files::ByteSpan compoundFile, std::string_view name);

/// Whether the bytes are a compound file with an encrypted package in it: a .docx with a password to open it.
bool isEncryptedPackage(files::ByteSpan bytes);

}  // namespace pluvo::archive
