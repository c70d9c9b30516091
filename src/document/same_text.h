#pragma once

#include "text/original.h"
#include "text/pieces.h"

#include <functional>

namespace pluvo::document {

/// Calls pause every few megabytes.
bool sameText(const text::PieceText& edited, const text::OriginalText& readBack,
              const std::function<void()>& pause);

}  // namespace pluvo::document
