#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

namespace pluvo::zip {

/// The error for bytes that should have been a package but are no ZIP archive: password for an encrypted
/// package, otherwise damaged, with a sentence that says what they look like (an older Word document, RTF,
/// PDF, a web page, plain text, a cut-off archive, nothing at all).
errors::DocumentError notAnArchive(base::ByteSpan bytes);

}  // namespace pluvo::zip
