#include "touched.h"

#include <algorithm>

namespace pluvo::formats::html {

Touched::Touched(const document::EditScript& script, const document::Story& story,
                 const text::RunMap<std::uint8_t>& originalHighlight) {
  document::forEachTouchedSpan(script, story, originalHighlight,
                               [&](text::Span span) { spans_.push_back(span); });
}

bool Touched::in(text::Position from, text::Position to) {
  while (next_ < spans_.size() && spans_[next_].to <= from) ++next_;
  return next_ < spans_.size() && spans_[next_].from < to;
}

bool Touched::isNear(text::Position at) const {
  constexpr text::Position kReach = 40;
  const auto next = std::ranges::lower_bound(spans_, at, {}, &text::Span::to);
  return next != spans_.end() && next->from <= at + kReach;
}

}  // namespace pluvo::formats::html
