#include "moved_places.h"

#include <algorithm>

namespace pluvo::doc {

using text::Position;
using text::Span;

void MovedPlaces::add(Position at, Position come, Position go) {
  if (come == 0 && go == 0) return;
  if (!changes_.empty()) {
    Change& last = changes_.back();
    if (last.at == at && last.go == 0) {
      last.come += come;
      last.go = go;
      return;
    }
    if (last.at + last.go == at && come == 0) {
      last.go += go;
      return;
    }
  }
  const Position shift =
      changes_.empty() ? 0 : changes_.back().shift + changes_.back().come - changes_.back().go;
  changes_.push_back({at, come, go, shift});
}

const MovedPlaces::Change* MovedPlaces::lastUpTo(Position at) const {
  const auto after = std::ranges::upper_bound(changes_, at, {}, &Change::at);
  return after == changes_.begin() ? nullptr : &*(after - 1);
}

const MovedPlaces::Change* MovedPlaces::lastBefore(Position at) const {
  const auto after = std::ranges::lower_bound(changes_, at, {}, &Change::at);
  return after == changes_.begin() ? nullptr : &*(after - 1);
}

bool MovedPlaces::isGone(Position at) const {
  const Change* const last = lastUpTo(at);
  return last != nullptr && at < last->at + last->go;
}

bool MovedPlaces::areGone(Span span) const {
  for (Position at = span.from; at < span.to;) {
    const Change* const last = lastUpTo(at);
    if (last == nullptr || at >= last->at + last->go) return false;
    at = last->at + last->go;
  }
  return true;
}

Position MovedPlaces::character(Position at) const {
  const Change* const last = lastUpTo(at);
  if (last == nullptr) return at;
  const Position after = std::max(at, last->at + last->go);
  return after + last->shift + last->come - last->go;
}

Position MovedPlaces::boundary(Position at) const {
  const Change* const last = lastBefore(at);
  if (last == nullptr) return at;
  const Position after = std::max(at, last->at + last->go);
  return after + last->shift + last->come - last->go;
}

std::vector<Span> MovedPlaces::gone() const {
  std::vector<Span> spans;
  for (const Change& change : changes_) {
    if (change.go == 0) continue;
    if (!spans.empty() && spans.back().to == change.at) {
      spans.back().to = change.at + change.go;
    } else {
      spans.push_back({change.at, change.at + change.go});
    }
  }
  return spans;
}

}  // namespace pluvo::doc
