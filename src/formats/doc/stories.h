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
  /// The characters of other stories with which it goes, once all have gone: those that refer to it or anchor
  /// it. For a header they are the section breaks of its sections. None where it stays.
  std::vector<document::StoryAnchor> anchors = {};
};

/// Main text, headers, footers, footnotes, endnotes, comments, boxes, each kind in its order.
std::vector<StoryPlace> storiesOf(const Text& text);

}  // namespace pluvo::doc
