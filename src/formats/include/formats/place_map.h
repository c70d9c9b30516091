#pragma once

#include "text/positions.h"

#include <algorithm>
#include <vector>

namespace pluvo::formats {

/// The way from an original text back to its bytes: where some of its positions begin. A reader notes them
/// front to back; places between are found by reading on from the nearest one in front.
template <class Offset>
class PlaceMap {
 public:
  struct Place {
    text::Position position = 0;
    Offset offset = 0;
  };

  /// At least so many units lie between two places that are noted.
  explicit PlaceMap(text::Position interval = 0) : interval_(interval) {}

  void note(text::Position position, Offset offset) {
    if (position >= next_) add({position, offset});
  }

  /// The last place noted at a position, or in front of it; the beginning of text and bytes where there is
  /// none.
  Place before(text::Position position) const { return lastUpTo(position, &Place::position); }
  /// The same by bytes.
  Place beforeOffset(Offset offset) const { return lastUpTo(offset, &Place::offset); }

  /// For bytes that were moved: moved(offset) is where they lie now, in the same order.
  template <class Moved>
  void moveOffsets(Moved moved) {
    for (Place& place : places_) place.offset = moved(place.offset);
  }

 private:
  void add(Place place) {
    places_.push_back(place);
    next_ = place.position + interval_;
  }

  template <class Value>
  Place lastUpTo(Value value, Value Place::*member) const {
    const auto after = std::ranges::upper_bound(places_, value, {}, member);
    return after == places_.begin() ? Place{} : *(after - 1);
  }

  text::Position interval_;
  text::Position next_ = 0;
  std::vector<Place> places_;
};

}  // namespace pluvo::formats
