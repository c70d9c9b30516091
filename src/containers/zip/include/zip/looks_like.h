#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

namespace pluvo::zip {

/// The error for bytes that should have been a package but are no ZIP archive. It is password for an
/// encrypted package, else damaged. The sentence says what they look like: an older Word document, RTF, PDF,
/// a web page, plain text, a cut-off archive, or nothing at all.
errors::DocumentError notAnArchive(base::ByteSpan bytes);

}  // namespace pluvo::zip
