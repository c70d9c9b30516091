#include "document/live_ranges.h"

namespace pluvo::document {

using text::Position;
using text::Span;

LiveRange::LiveRange(LiveRanges& ranges, Span span) : ranges_(&ranges) {
  set(span);
  ranges.add(*this);
}

LiveRange::~LiveRange() {
  if (ranges_ != nullptr) ranges_->drop(*this);
}

void LiveRange::moveWith(Span replaced, Position newLength) {
  const Position shift = newLength - replaced.length();
  const Position newEnd = replaced.from + newLength;
  Span moved = span();
  const bool wasEmpty = moved.empty();

  if (moved.to > replaced.to) {
    moved.to += shift;
  } else if (moved.to > replaced.from || (replaced.empty() && moved.to == replaced.from && !wasEmpty)) {
    moved.to = newEnd;
  }
  if (wasEmpty) {
    moved.from = moved.to;
  } else if (moved.from >= replaced.to && moved.from > replaced.from) {
    moved.from += shift;
  } else if (moved.from > replaced.from) {
    moved.from = replaced.from;
  }
  set(moved);
}

LiveRanges::~LiveRanges() {
  for (LiveRange* range : ranges_) range->ranges_ = nullptr;
}

void LiveRanges::moveWith(Span replaced, Position newLength) {
  for (LiveRange* range : ranges_) range->moveWith(replaced, newLength);
}

void LiveRanges::add(LiveRange& range) {
  range.place_ = ranges_.size();
  ranges_.push_back(&range);
}

void LiveRanges::drop(const LiveRange& range) {
  ranges_[range.place_] = ranges_.back();
  ranges_[range.place_]->place_ = range.place_;
  ranges_.pop_back();
}

}  // namespace pluvo::document
