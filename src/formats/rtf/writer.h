#pragma once

#include "document/document.h"
#include "document_reader.h"

#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Writes an edited document, of a file and what its reader knows of it.
void writeDocument(std::string_view file, const Tables& tables, const std::vector<StoryPlace>& places,
                   const document::Document& document, base::Output& out);

}  // namespace pluvo::rtf
