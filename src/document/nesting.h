#pragma once

#include "document/content.h"

#include <algorithm>
#include <vector>

namespace pluvo::document {

/// The innermost of the tables (or fields) in which both a and b lie; kNone when there is none. Parents have
/// lower indexes than their children.
template <class Nested>
std::int32_t commonOf(const std::vector<Nested>& all, std::int32_t a, std::int32_t b) {
  while (a != b) {
    std::int32_t& inner = a > b ? a : b;
    inner = all[static_cast<std::size_t>(inner)].parent;
  }
  return a;
}

/// The tables (or fields) that a span covers only partly: those that reach over one of its ends.
template <class Nested>
class PartlyCovered {
 public:
  PartlyCovered(const std::vector<Nested>& all, std::int32_t overStart, std::int32_t overEnd) : all_(all) {
    addChain(overStart);
    addChain(overEnd);
    std::sort(partly_.begin(), partly_.end());
  }

  bool holds(std::int32_t index) const { return std::binary_search(partly_.begin(), partly_.end(), index); }

  /// The innermost partly covered one around (or equal to) index, and the outermost wholly covered one inside
  /// it.
  struct Place {
    std::int32_t partly = kNone;
    std::int32_t wholly = kNone;
  };
  Place placeOf(std::int32_t index) const {
    Place place;
    while (index != kNone && !holds(index)) {
      place.wholly = index;
      index = all_[static_cast<std::size_t>(index)].parent;
    }
    place.partly = index;
    return place;
  }

 private:
  void addChain(std::int32_t index) {
    for (; index != kNone; index = all_[static_cast<std::size_t>(index)].parent) partly_.push_back(index);
  }

  const std::vector<Nested>& all_;
  std::vector<std::int32_t> partly_;
};

}  // namespace pluvo::document
