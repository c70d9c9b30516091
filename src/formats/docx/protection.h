#pragma once

#include "formats/format.h"
#include "package.h"

#include <optional>

namespace pluvo::docx {

/// The protection against editing that the settings enforce. A password that is asked for before the document
/// is changed at all is taken as one that lifts a protection.
std::optional<formats::Protection> protectionOf(const Package& package);

}  // namespace pluvo::docx
