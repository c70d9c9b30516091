#pragma once

#include "text/pieces.h"
#include "text/positions.h"
#include "text/run_map.h"

#include <string>

namespace pluvo::text {

/// What a find sees and a range's text holds: field results, or field codes.
enum class View : std::uint8_t { results = kInResults, codes = kInCodes };

constexpr bool isVisible(Visibility visibility, View view) {
  return (visibility & static_cast<std::uint8_t>(view)) != 0;
}

/// The contiguous stretches of [from, to) that the view shows, in order: visit(Position start, const
/// Stretch&), which returns false to stop.
template <class Visit>
void forEachVisibleStretch(const PieceText& text, const RunMap<Visibility>& visibility, View view,
                           Position from, Position to, Visit visit) {
  for (const auto& run : visibility.runs(from, to)) {
    if (!isVisible(run.value, view)) continue;
    bool goOn = true;
    text.forEachStretch(run.from, run.to,
                        [&](Position start, const Stretch& stretch) { return goOn = visit(start, stretch); });
    if (!goOn) return;
  }
}

/// The characters of [from, to) that the view shows.
std::u16string visibleText(const PieceText& text, const RunMap<Visibility>& visibility, View view,
                           Position from, Position to);

}  // namespace pluvo::text
