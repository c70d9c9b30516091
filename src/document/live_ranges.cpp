#include "document/live_ranges.h"

namespace pluvo::document {

using text::Position;
using text::Span;

LiveRange::LiveRange(LiveRanges& ranges, Span span) : ranges_(&ranges), span_(span) { ranges.add(*this); }

LiveRange::~LiveRange() {
  if (ranges_ != nullptr) ranges_->drop(*this);
}

void LiveRange::moveWith(Span replaced, Position newLength) {
  const Position shift = newLength - replaced.length();
  const Position newEnd = replaced.from + newLength;
  const bool wasEmpty = span_.empty();

  if (span_.to > replaced.to) {
    span_.to += shift;
  } else if (span_.to > replaced.from || (replaced.empty() && span_.to == replaced.from && !wasEmpty)) {
    span_.to = newEnd;
  }
  if (wasEmpty) {
    span_.from = span_.to;
  } else if (span_.from >= replaced.to && span_.from > replaced.from) {
    span_.from += shift;
  } else if (span_.from > replaced.from) {
    span_.from = replaced.from;
  }
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
