#pragma once

#include "document/story.h"
#include "formats/other_texts.h"
#include "reader.h"

namespace pluvo::formats::html {

/// Tells what of a page is not main text: notes, comments, headers and footers, and what no request reaches.
void tellOtherTexts(const Page& page, const document::Story& mainText, formats::OtherTexts& texts);

}  // namespace pluvo::formats::html
