#pragma once

#include "files/bytes.h"
#include "files/problem.h"

namespace pluvo::archive {

/// The error for bytes that should have been a package but are no ZIP archive: password for an encrypted
/// package, otherwise damaged, with a sentence that says what they look like (an older Word document, RTF,
/// PDF, a web page, plain text, a cut-off archive, nothing at all).
files::DocumentError notAnArchive(files::ByteSpan bytes);

}  // namespace pluvo::archive
