#pragma once

#include "document/place.h"
#include "reader.h"
#include "story_parts.h"
#include "style_sheet.h"

#include <optional>
#include <vector>

namespace pluvo::formats::html {

/// Where a page has a text beside main text.
struct StoryPlace {
  StoryPart part;
  std::optional<text::Position> anchor;  ///< in main text
  TextMap map;                           ///< empty where the text was not asked for

  Part partIn(StyleSheet& sheet) const {
    const bool isNote = document::placeOf(part.kind) >= document::Place::footnotes;
    return {part.content, &sheet, isNote, &map.strays};
  }
};

/// The facts about a page that its writer needs.
struct OldDocument {
  TextMap mainText;
  /// As the stories that come after main text, where those were asked for.
  std::vector<StoryPlace> places;
  StyleSheet sheet;
};

struct ReadDocument {
  std::vector<document::Content> stories;
  OldDocument old;
};

/// Reads a page: main text, and the others if they are asked for. Throws errors::DocumentError.
ReadDocument readDocument(const Page& page, bool allStories);

}  // namespace pluvo::formats::html
