#pragma once

#include "word/word_processor.h"

namespace pluvo::multifile {

/// Whether the document has no changes; one that does not tell may have some.
bool isSaved(word::Document& document);

/// It had no changes, and the changes since are no reason to write its file. Where that cannot be said
/// the file is written.
void keepSaved(word::Document& document);

}  // namespace pluvo::multifile
