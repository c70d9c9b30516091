#pragma once

#include "doc_source.h"
#include "document/story.h"
#include "formats/other_texts.h"

namespace pluvo::doc {

/// Tells headers, notes, comments and boxes, and the texts that no request reaches. Those are properties,
/// variables, WordArt, descriptions of pictures, the glossary of a template and text of earlier versions.
/// Text that went from main text takes its notes, comments and boxes along.
void tellOtherTexts(const Opened& opened, const document::Story& mainText, formats::OtherTexts& texts);

}  // namespace pluvo::doc
