#include "text/visible.h"

namespace pluvo::text {

std::u16string visibleText(const PieceText& text, const RunMap<Visibility>& visibility, View view,
                           Position from, Position to) {
  std::u16string units;
  for (const auto& run : visibility.runs(from, to)) {
    if (!isVisible(run.value, view)) continue;
    const std::size_t length = units.size();
    units.resize(length + static_cast<std::size_t>(run.to - run.from));
    text.copy(run.from, run.to, units.data() + length);
  }
  return units;
}

}  // namespace pluvo::text
