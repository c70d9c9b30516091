#pragma once

#include "unit_rules.h"

#include <array>
#include <cassert>

namespace pluvo::text {

/// A short span of a text and a little around it, copied together for reading, with a class for each unit.
class UnitReader {
 public:
  static constexpr Position kMargin = 4;
  static constexpr Position kLongest = 4096;

  UnitReader(const PieceText& text, Position from, Position to)
      : start_(std::max(from - kMargin, 0)), length_(to - start_ + std::min(text.length() - to, kMargin)) {
    assert(to - from <= kLongest);
    text.copy(start_, start_ + length_, units_.data());
  }

  Position start() const { return start_; }
  /// Of everything copied; indexes below count from start().
  Position length() const { return length_; }
  char16_t unit(Position i) const { return units_[static_cast<std::size_t>(i)]; }
  std::uint8_t& kind(Position i) { return kinds_[static_cast<std::size_t>(i)]; }

  template <class KindOf>
  void classify(const std::array<std::uint8_t, 256>& narrowKinds, KindOf kindOf) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(length_); ++i) {
      kinds_[i] = units_[i] < 256 ? narrowKinds[units_[i]] : kindOf(units_[i]);
    }
  }

 private:
  static constexpr std::size_t kRoom = static_cast<std::size_t>(kLongest + 2 * kMargin);
  Position start_;
  Position length_;
  std::array<char16_t, kRoom> units_;
  std::array<std::uint8_t, kRoom> kinds_;
};

/// The kinds of the first 256 units.
template <class KindOf>
std::array<std::uint8_t, 256> narrowKinds(KindOf kindOf) {
  std::array<std::uint8_t, 256> kinds{};
  for (std::size_t unit = 0; unit < kinds.size(); ++unit) kinds[unit] = kindOf(static_cast<char16_t>(unit));
  return kinds;
}

}  // namespace pluvo::text
