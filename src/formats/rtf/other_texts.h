#pragma once

#include "document/story.h"
#include "document_reader.h"
#include "formats/other_texts.h"

#include <string_view>

namespace pluvo::rtf {

/// Tells headers, notes, comments and boxes, and what no request reaches: formulas, properties, variables.
/// Text that went from main text takes its notes, comments and boxes along.
void tellOtherTexts(std::string_view file, const OldDocument& old, const document::Story& mainText,
                    formats::OtherTexts& texts);

}  // namespace pluvo::rtf
