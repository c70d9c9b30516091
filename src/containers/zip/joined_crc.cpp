#include "joined_crc.h"

namespace pluvo::zip {

namespace {

/// A polynomial over the field of two elements, below the 32nd power. The highest bit holds the constant
/// term, as in CRC-32.
using Polynomial = std::uint32_t;
constexpr Polynomial kOne = 0x8000'0000;
/// What CRC-32 divides by, without its 32nd power.
constexpr Polynomial kDivisor = 0xEDB8'8320;

constexpr Polynomial timesX(Polynomial value) { return (value >> 1U) ^ ((value & 1U) != 0 ? kDivisor : 0); }

constexpr Polynomial product(Polynomial first, Polynomial second) {
  Polynomial sum = 0;
  for (; first != 0; first <<= 1U, second = timesX(second))
    if ((first & kOne) != 0) sum ^= second;
  return sum;
}

}  // namespace

std::uint32_t crcOfBoth(std::uint32_t first, std::uint32_t second, std::uint64_t sizeOfSecond) {
  // Each byte that follows multiplies the first CRC by the eighth power of x.
  Polynomial power = kOne >> 8U;
  for (; sizeOfSecond != 0; sizeOfSecond >>= 1U, power = product(power, power))
    if ((sizeOfSecond & 1U) != 0) first = product(first, power);
  return first ^ second;
}

}  // namespace pluvo::zip
