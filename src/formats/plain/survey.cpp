#include "survey.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace pluvo::plain {

namespace {

using Word = std::uint64_t;
constexpr Word kOnes = ~Word{0} / 0xFF;
constexpr Word kHighBits = kOnes * 0x80;

/// The high bit of every byte that is zero, and perhaps of bytes after the first one.
constexpr Word zeroBytes(Word word) { return (word - kOnes) & ~word & kHighBits; }

constexpr Word endsOfRun(Word word) {
  return (word & kHighBits) | zeroBytes(word ^ (kOnes * '\r')) | zeroBytes(word ^ (kOnes * '\n'));
}

bool endsRun(std::uint8_t byte) { return byte >= 0x80 || byte == '\r' || byte == '\n'; }

}  // namespace

Survey surveyOf(base::ByteSpan bytes) {
  // One loop without branches over bytes alone, for the compiler to turn into vector code.
  std::uint8_t lowest = 0xFF;
  std::uint8_t highest = 0;
  std::uint8_t specials = 0;
  std::uint8_t carriageReturns = 0;
  for (const std::uint8_t byte : bytes) {
    lowest = std::min(lowest, byte);
    highest = std::max(highest, byte);
    specials = static_cast<std::uint8_t>(specials | (static_cast<std::uint8_t>(byte - 0x80) < 0x20 ? 1 : 0));
    carriageReturns = static_cast<std::uint8_t>(carriageReturns | (byte == '\r' ? 1 : 0));
  }
  return {lowest, highest, specials != 0, carriageReturns != 0};
}

std::size_t plainRun(base::ByteSpan bytes) {
  static_assert(std::endian::native == std::endian::little, "the first byte is the lowest");
  std::size_t at = 0;
  for (; at + sizeof(Word) <= bytes.size(); at += sizeof(Word)) {
    Word word = 0;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    if (const Word ends = endsOfRun(word); ends != 0)
      return at + static_cast<std::size_t>(std::countr_zero(ends)) / 8;
  }
  while (at < bytes.size() && !endsRun(bytes[at])) ++at;
  return at;
}

}  // namespace pluvo::plain
