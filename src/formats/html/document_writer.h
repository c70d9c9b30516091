#pragma once

#include "base/bytes.h"
#include "document/document.h"
#include "document_reader.h"

namespace pluvo::formats::html {

/// Writes a page as its stories stand. Throws errors::DocumentError.
void writeDocument(const Page& page, const OldDocument& old, const document::Document& document,
                   base::Output& out);

}  // namespace pluvo::formats::html
