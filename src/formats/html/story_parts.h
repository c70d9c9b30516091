#pragma once

#include "page.h"
#include "tokens.h"
#include "walker.h"
#include "word/enums.h"

#include <string>
#include <vector>

namespace pluvo::formats::html {

/// A header, footer, note or comment, in an element that main text passes by.
struct StoryPart {
  word::WdStoryType kind = word::wdFootnotesStory;
  Extent whole;    ///< its element
  Extent content;  ///< without that one's tags
  std::string id;  ///< of a note, as its reference has it
};

/// Whether a walk passes by what holds such texts.
bool holdsStories(Aside kind);

/// The texts in such an element, in their order.
std::vector<StoryPart> storiesIn(const Page& page, Aside kind, Extent element);

/// To which note the bytes of a reference lead.
std::string noteOf(const Page& page, Extent reference);

/// An element without its own tags.
Extent withinTags(const Page& page, Extent element);

}  // namespace pluvo::formats::html
