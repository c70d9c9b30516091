#pragma once

#include "document/story.h"
#include "text/run_map.h"
#include "text/visible.h"

namespace pluvo::elsewhere {

/// Where a character stands, as one view has it.
enum class Place : std::uint8_t {
  shown,
  hidden,
  otherSide,  ///< in a field's code where results show, or the reverse
  computed,   ///< in a code, and shown by Word in place of a result
  mark,       ///< not shown, and no text: the marks of fields, the anchors of comments
};

/// Whether a text has marks of fields or anchors of comments. Of one without, what a view does not show is
/// hidden.
bool hasMarks(const document::Story& story);

/// The place of every character. Not to be asked of a text that the view shows wholly, since it costs.
text::RunMap<Place> placesOf(const document::Story& story, text::View view);

}  // namespace pluvo::elsewhere
