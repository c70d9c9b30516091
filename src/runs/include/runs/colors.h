#pragma once

#include "word/enums.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::runs {

/// The highlight colour of that name: one of six short names, or one of Word's sixteen. The short name green
/// is Word's dark green, as in its dialog. Capitals, blanks, hyphens and "grey" make no difference.
std::optional<word::WdColorIndex> colorNamed(std::string_view name);

/// The name that colorNamed takes.
std::string nameOf(word::WdColorIndex color);

/// Names to suggest from.
const std::vector<std::string_view>& colorNames();

}  // namespace pluvo::runs
