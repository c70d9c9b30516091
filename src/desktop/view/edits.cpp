#include "edits.h"

#include <algorithm>

namespace pluvo::view {

void Edits::add(Span span, Position newLength) {
  const Position growth = newLength - span.length();
  Edit edit{span.from, span.from + newLength, growth};
  const auto first = std::lower_bound(edits_.begin(), edits_.end(), span.from,
                                      [](const Edit& known, Position at) { return known.to < at; });
  auto last = first;
  for (; last != edits_.end() && last->from <= span.to; ++last) {
    edit.from = std::min(edit.from, last->from);
    edit.to = std::max(edit.to, last->to + growth);
    edit.growth += last->growth;
  }
  for (auto after = last; after != edits_.end(); ++after) {
    after->from += growth;
    after->to += growth;
  }
  if (first == last) {
    edits_.insert(first, edit);
  } else {
    *first = edit;
    edits_.erase(first + 1, last);
  }
}

std::vector<Exchange> Edits::exchanges() const {
  std::vector<Exchange> exchanges;
  exchanges.reserve(edits_.size());
  Position growth = 0;
  for (const Edit& edit : edits_) {
    const Position from = edit.from - growth;
    growth += edit.growth;
    exchanges.push_back({{from, edit.to - growth}, {edit.from, edit.to}});
  }
  return exchanges;
}

Position positionAfter(const std::vector<Exchange>& exchanges, Position before) {
  const auto after = std::upper_bound(exchanges.begin(), exchanges.end(), before,
                                      [](Position p, const Exchange& one) { return p < one.gone.from; });
  if (after == exchanges.begin()) return before;
  const Exchange& last = *std::prev(after);
  return before < last.gone.to ? last.come.from : before - last.gone.to + last.come.to;
}

bool touch(const std::vector<Exchange>& exchanges, Span before) {
  const auto first = std::lower_bound(exchanges.begin(), exchanges.end(), before.from,
                                      [](const Exchange& one, Position p) { return one.gone.to < p; });
  return first != exchanges.end() && first->gone.from <= before.to;
}

}  // namespace pluvo::view
