#include "unit_rules.h"

namespace pluvo::text {

Summary<1> VisibleRule::summarise(Position from, Position to) const {
  Summary<1> summary;
  for (const auto& run : visibility_->runs(from, to)) {
    if (isVisible(run.value, view_)) summary.counts[0] += run.to - run.from;
  }
  return summary;
}

Position VisibleRule::nth(Position from, Position to, std::uint8_t, Position n) const {
  for (const auto& run : visibility_->runs(from, to)) {
    if (!isVisible(run.value, view_)) continue;
    if (run.to - run.from >= n) return run.from + n - 1;
    n -= run.to - run.from;
  }
  return to;
}

}  // namespace pluvo::text
