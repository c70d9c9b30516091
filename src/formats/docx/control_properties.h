#pragma once

#include "properties.h"

#include <string>
#include <string_view>

/// Changes to content controls of which the text changes. Properties are the bytes between the start tags of
/// a control and of its content.
namespace pluvo::docx {

/// Properties that no longer say what the text denies. The control is not bound to data, which would be read
/// back into it. It shows no placeholder, and has no chosen date or value. Where it holds line breaks, a
/// control for one line of text becomes one for several.
std::string forChangedText(std::string_view controlProperties, const Markup& markup, bool hasLineBreaks);

/// Properties for a copy of the control, which is known by a number of its own.
std::string withoutIdentity(std::string_view controlProperties);

bool showsPlaceholder(std::string_view controlProperties);

/// Content without the style of placeholders in its runs and marks; controls in it that show one keep theirs.
std::string withoutPlaceholderLook(std::string_view content, std::string_view style);

}  // namespace pluvo::docx
