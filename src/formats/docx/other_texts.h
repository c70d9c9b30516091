#pragma once

#include "document/story.h"
#include "formats/other_texts.h"
#include "package.h"
#include "reader.h"
#include "styles.h"

namespace pluvo::docx {

/// A document as it was read.
struct ReadDocument {
  const Package& package;
  base::ByteSpan mainPart;  ///< UTF-8
  const BodyMap& map;
  const Styles& styles;
};

/// Tells all texts of the package that its main text does not hold, and those of packages in it. Each part
/// comes once, in the order of the relationships. Text that went from main text takes its notes, boxes and
/// pictures along.
void tellOtherTexts(const ReadDocument& document, const document::Story& story, formats::OtherTexts& texts);

}  // namespace pluvo::docx
