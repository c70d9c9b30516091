#pragma once

#include "unit_rules.h"

#include <array>
#include <cassert>
#include <cstring>

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
  std::uint8_t kind(Position i) const { return *kindsFrom(i); }
  /// The kinds from index i on. In front of the start of the text lies the kind that classify was given for
  /// it.
  const std::uint8_t* kindsFrom(Position i) const { return kinds_.data() + 1 + i; }

  /// A kind with this bit set depends on the units beside it.
  static constexpr std::uint8_t kUnresolved = 8;

  /// Gives each unit its kind: of the first 256 that in the table, of others the usual one if isUsual(unit),
  /// else what kindOf(unit) tells. Then those that are unresolved get what resolve(index) tells. No branch
  /// depends on the order of scripts.
  template <class IsUsual, class KindOf, class Resolve>
  void classify(const std::array<std::uint8_t, 256>& narrowKinds, std::uint8_t usual, IsUsual isUsual,
                KindOf kindOf, std::uint8_t inFront, Resolve resolve) {
    kinds_[0] = inFront;
    std::uint8_t* kinds = kinds_.data() + 1;
    const auto length = static_cast<std::size_t>(length_);
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < length; ++i) {
      const char16_t unit = units_[i];
      const bool wide = unit >= narrowKinds.size();
      const std::uint8_t narrow = narrowKinds[unit % narrowKinds.size()];
      std::uint8_t kind = wide ? usual : narrow;
      if (wide & !isUsual(unit)) kind = kindOf(unit);
      kinds[i] = kind;
      all |= kind;
    }
    if ((all & kUnresolved) == 0) return;
    for (Position i = 0; i < length_; i += kBundle) {
      std::uint64_t bundle = 0;
      std::memcpy(&bundle, kinds + i, kBundle);
      if ((bundle & 0x0101010101010101U * kUnresolved) == 0) continue;
      for (Position j = i; j < std::min(i + kBundle, length_); ++j) {
        if ((kinds[j] & kUnresolved) != 0) kinds[j] = resolve(j);
      }
    }
  }

 private:
  static constexpr Position kBundle = sizeof(std::uint64_t);
  static constexpr std::size_t kRoom{kLongest + 2 * kMargin};
  Position start_;
  Position length_;
  std::array<char16_t, kRoom> units_;
  std::array<std::uint8_t, 1 + kRoom + kBundle> kinds_;
};

/// The kinds of the first 256 units.
template <class KindOf>
std::array<std::uint8_t, 256> narrowKinds(KindOf kindOf) {
  std::array<std::uint8_t, 256> kinds{};
  for (std::size_t unit = 0; unit < kinds.size(); ++unit) kinds[unit] = kindOf(static_cast<char16_t>(unit));
  return kinds;
}

}  // namespace pluvo::text
