#pragma once

#include "document/content.h"
#include "document/content_builder.h"
#include "walker.h"

#include <utility>
#include <vector>

namespace pluvo::formats::html {

/// The facts about a text that its writer needs.
struct TextMap {
  std::vector<text::Span> tables;  ///< in the order in which they begin
  text::RunMap<std::uint8_t> highlight;
  bool endsWithoutBytes = false;    ///< the last mark stands for nothing in the file
  std::vector<std::size_t> strays;  ///< marks of fields that do not belong together, and so are no text

  /// Main text again. Lives as long as this.
  Part partOf(const Page& page) const { return {{0, page.bytes().size()}, nullptr, false, &strays}; }
};

/// The texts that a walk met beside the one it read.
struct FoundBeside {
  std::vector<std::pair<Aside, Extent>> holders;
  std::vector<std::pair<text::Position, Extent>> noteReferences;
  std::vector<text::Position> commentPlaces;
};

struct ReadText {
  document::Content content;
  TextMap map;
  FoundBeside beside;
  StyleSheet sheet;  ///< where the part has none from around it
};

/// Reads main text, or the part of a page that holds another text. Throws errors::DocumentError.
ReadText readText(const Page& page, Part part);

}  // namespace pluvo::formats::html
