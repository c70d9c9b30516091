#pragma once

// Whether bytes are UTF-8, for one set of vector instructions; see vectors.h.

#include "vectors.h"

namespace pluvo::text {
namespace {

/// So many bytes in front of those looked at are read, too.
constexpr std::size_t kInFront = 3;

/// The bytes at an offset and kInFront more, with blanks where there are none.
template <std::size_t kSize>
struct Padded {
  std::uint8_t all[kInFront + kSize];

  Padded(const std::uint8_t* bytes, std::size_t size, std::size_t offset) {
    for (std::size_t i = 0; i < sizeof all; ++i) {
      const std::size_t at = offset + i;
      all[i] = at >= kInFront && at - kInFront < size ? bytes[at - kInFront] : std::uint8_t{' '};
    }
  }
  const std::uint8_t* bytes() const { return all + kInFront; }
};

#if defined(__AVX2__)

/// What may be wrong with two bytes in a row, a bit each.
enum Fault : std::uint8_t {
  kCutOff = 1,     ///< a lead without a follower
  kStray = 2,      ///< a follower after ASCII
  kLongOfTwo = 4,  ///< fewer bytes would do
  kLongOfThree = 8,
  kSurrogate = 16,
  kBeyond = 32,         ///< 10FFFF, or no lead at all
  kLongOfFour = 64,     ///< or beyond, where the second byte is 8x
  kTwoFollowers = 128,  ///< right after the leads of longer characters only
};

/// For each nibble the faults it allows. Those that all three nibbles of two bytes allow are there.
struct FaultTables {
  std::uint8_t firstHigh[sizeof(Vector)] = {}, firstLow[sizeof(Vector)] = {}, secondHigh[sizeof(Vector)] = {};

  constexpr FaultTables() {
    for (unsigned i = 0; i < sizeof(Vector); ++i) {
      const unsigned nibble = i % 16;
      const auto allow = [&](std::uint8_t& faults, bool where, Fault fault) {
        if (where) faults = static_cast<std::uint8_t>(faults | fault);
      };
      const bool follower = nibble >= 8 && nibble < 12;
      const auto row = [&](Fault fault, bool high, bool low, bool second) {
        allow(firstHigh[i], high, fault);
        allow(firstLow[i], low, fault);
        allow(secondHigh[i], second, fault);
      };
      row(kCutOff, nibble >= 12, true, !follower);
      row(kStray, nibble < 8, true, follower);
      row(kLongOfTwo, nibble == 12, nibble < 2, follower);
      row(kLongOfThree, nibble == 14, nibble == 0, nibble == 8 || nibble == 9);
      row(kSurrogate, nibble == 14, nibble == 13, nibble == 10 || nibble == 11);
      row(kBeyond, nibble == 15, nibble >= 4, nibble >= 9 && follower);
      row(kLongOfFour, nibble == 15, nibble == 0 || nibble >= 5, nibble == 8);
      row(kTwoFollowers, follower, true, follower);
    }
  }
};
constexpr FaultTables kFaults;

#endif

/// Bytes that may be UTF-8, with those one, two and three places in front of each.
struct Utf8Vector {
  Vector here, one, two, three;

  explicit Utf8Vector(const std::uint8_t* at)
      : here(load(at)), one(load(at - 1)), two(load(at - 2)), three(load(at - 3)) {}

  /// Not zero where UTF-8 has no such byte after those in front.
  Vector wrong() const {
#if defined(__AVX2__)
    const Vector faults =
        both(both(lookUp(kFaults.firstHigh, highNibbles(one)), lookUp(kFaults.firstLow, lowNibbles(one))),
             lookUp(kFaults.secondHigh, highNibbles(here)));
    const Vector longer = either(beyond(two, 0xE0 - 0x80), beyond(three, 0xF0 - 0x80));
    return unlike(faults, both(longer, fill(std::uint8_t{kTwoFollowers})));
#else
    const Vector begun = either(either(beyond(one, 0xBF), beyond(two, 0xDF)), beyond(three, 0xEF));
    const Vector misplaced = unlike(greater(begun, 0), greater(0xC0, here));
    const Vector never = either(equal(either(here, fill(std::uint8_t{1})), 0xC1), beyond(here, 0xF4));
    const Vector tooLong = either(both(equal(one, 0xE0), greater(0xA0, here)),  // fewer bytes would do
                                  both(equal(one, 0xF0), greater(0x90, here)));
    const Vector outside = either(both(equal(one, 0xED), greater(here, 0x9F)),   // surrogates
                                  both(equal(one, 0xF4), greater(here, 0x8F)));  // beyond 10FFFF
    return either(either(misplaced, never), either(tooLong, outside));
#endif
  }
  /// Where U+FFFE and U+FFFF end: EF BF BE and EF BF BF.
  Vector noncharacters() const { return both(both(equal(two, 0xEF), equal(one, 0xBF)), greater(here, 0xBD)); }
};

}  // namespace
}  // namespace pluvo::text
