#pragma once

#include "word/word_processor.h"

#include <cstdint>
#include <string>

namespace pluvo::runs {

/// A piece of a document for people to read, on one line. Marks and breaks are shown as signs. Long text is
/// shortened in its middle.
struct Excerpt {
  std::string lead;  ///< the text before it in its paragraph
  std::string piece;
  std::string trail;  ///< the text after it, in the paragraph it ends in
};

/// The text at [start, end) in a story, see word::Document. No more of the document is read than is shown,
/// however long the piece is.
Excerpt excerptOf(word::Document& document, std::int32_t story, std::int32_t start, std::int32_t end);

}  // namespace pluvo::runs
