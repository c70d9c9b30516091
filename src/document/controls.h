#pragma once

#include "document/edit_policy.h"

namespace pluvo::document {

/// The control of new text that takes the place of a span, or stands at a place, and has so much of a
/// structure already. besideLeft: it takes after the character before it.
std::int32_t controlFor(const Story& story, text::Span span, bool besideLeft, const Structure& structure,
                        std::u16string_view newText);

}  // namespace pluvo::document
