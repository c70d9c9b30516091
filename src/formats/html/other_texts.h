#pragma once

#include "document/story.h"
#include "document_reader.h"
#include "formats/other_texts.h"

namespace pluvo::formats::html {

/// Tells what of a page is not main text: notes, comments, headers and footers, and what no request reaches.
void tellOtherTexts(const Page& page, const OldDocument& old, const document::Story& mainText,
                    formats::OtherTexts& texts);

}  // namespace pluvo::formats::html
