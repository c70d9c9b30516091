#pragma once

#include "beginning.h"
#include "document/story.h"
#include "elsewhere/elsewhere.h"

namespace pluvo::elsewhere {

/// Whether there is anything that some view does not show.
bool hasUnshown(const text::RunMap<text::Visibility>& visibility);

/// Counts the beginning where a text holds it and the view does not show it. The search sees hidden
/// characters too, and counts matches with at least one of them. A character that an edit brought in does not
/// count. Costs nothing where the view shows all.
void countUnshown(const document::Story& story, const Beginning& beginning, bool fieldCodes,
                  Elsewhere& found);

}  // namespace pluvo::elsewhere
