#pragma once

#include "text/original.h"
#include "text/pieces.h"

#include <functional>

namespace pluvo::document {

/// Large texts are compared in parts, at once. Calls pause every few megabytes, of several threads.
bool sameText(const text::PieceText& edited, const text::OriginalText& readBack,
              const std::function<void()>& pause);

}  // namespace pluvo::document
