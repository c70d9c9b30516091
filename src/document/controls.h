#pragma once

#include "document/edit_policy.h"

namespace pluvo::document {

/// The control of new text that replaces a span, or stands at a place. The format has given that text so much
/// of a structure already.
std::int32_t controlFor(const Story& story, text::Span span, bool besideLeft, const Structure& structure,
                        std::u16string_view newText);

}  // namespace pluvo::document
