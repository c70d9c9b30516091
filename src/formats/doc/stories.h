#pragma once

#include "document/content.h"
#include "walker.h"
#include "word/enums.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace pluvo::doc {

/// Where a story beside main text lies among all texts of the document.
struct StoryPlace {
  word::WdStoryType kind = word::wdMainTextStory;
  text::Position from = 0;
  text::Position to = 0;
  /// The character of another story that refers to it or anchors it; nothing for headers and footers, and
  /// where the file does not tell.
  std::optional<document::StoryAnchor> anchor = std::nullopt;
};

/// Main text, headers, footers, footnotes, endnotes, comments, boxes, each kind in its order.
std::vector<StoryPlace> storiesOf(const Text& text);

}  // namespace pluvo::doc
