#pragma once

#include "document/content.h"
#include "document/content_builder.h"
#include "walker.h"

#include <vector>

namespace pluvo::formats::html {

/// What is to be known of a text besides it when it is written.
struct TextMap {
  std::vector<text::Span> tables;  ///< in the order in which they begin
  text::RunMap<std::uint8_t> highlight;
  bool endsWithoutBytes = false;  ///< the last mark stands for nothing in the file
};

struct ReadText {
  document::Content content;
  TextMap map;
};

/// Reads main text, or the part of a page that holds another text. Throws errors::DocumentError.
ReadText readText(const Page& page, Extent part);

}  // namespace pluvo::formats::html
