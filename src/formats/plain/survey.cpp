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
