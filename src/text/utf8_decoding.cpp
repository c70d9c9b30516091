#include "text/utf8_decoding.h"

#include "utf8_block.h"

#include <algorithm>
#include <cstring>

namespace pluvo::text {

namespace {

/// How the first four bytes, the first one highest, make a unit: moved to the right, then three masks.
struct Recipe {
  std::uint32_t shift, last, middle, first;
};
constexpr Recipe kOne = {24, 0x7F, 0, 0};
constexpr Recipe kTwo = {16, 0x3F, 0x7C0, 0};
constexpr Recipe kThree = {8, 0x3F, 0xFC0, 0xF000};
/// By the upper half of the first byte.
constexpr Recipe kRecipes[16] = {kOne, kOne, kOne, kOne, kOne, kOne, kOne,   kOne,
                                 kOne, kOne, kOne, kOne, kTwo, kTwo, kThree, kThree};

char16_t unitAt(const std::uint8_t* bytes) {
  const std::uint32_t four = std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
                             std::uint32_t{bytes[2]} << 8U | bytes[3];
  const Recipe& recipe = kRecipes[four >> 28U];
  const std::uint32_t moved = four >> recipe.shift;
  return static_cast<char16_t>((moved & recipe.last) | (moved >> 2U & recipe.middle) |
                               (moved >> 4U & recipe.first));
}

/// A block, of which three bytes more can be read.
struct Block {
  const std::uint8_t* bytes;
  Mask odd;  ///< controls and first bytes of characters of two units
  Mask starts;
  bool isAscii;

  explicit Block(const std::uint8_t* at) : bytes(at) {
    const Bytes64 block(at);
    const Mask high = block.high();
    odd = block.below(0x20) & ~high;
    starts = ~Mask{0};
    isAscii = high == 0;
    if (isAscii) return;
    odd |= high & ~block.highBelow(0xF0);
    starts = ~block.highBelow(0xC0);
  }
  /// How many bytes come before the first odd one.
  std::size_t even() const { return odd == 0 ? kBlock : static_cast<std::size_t>(__builtin_ctzll(odd)); }

  /// Writes the units before the first odd one, for which there is room.
  Utf8Decoded decode(char16_t* units) const {
    if (isAscii) {
      for (std::size_t i = 0; i < kBlock; ++i) units[i] = bytes[i];
      return {even(), even()};
    }
    const char16_t* const first = units;
    for (Mask left = wanted(); left != 0; left &= left - 1) *units++ = unitAt(bytes + __builtin_ctzll(left));
    return {even(), static_cast<std::size_t>(units - first)};
  }
  /// The same where room may be less.
  Utf8Decoded decode(char16_t* units, std::size_t room) const {
    Mask left = wanted();
    std::size_t count = 0;
    for (; left != 0 && count < room; left &= left - 1)
      units[count++] = unitAt(bytes + __builtin_ctzll(left));
    return {left == 0 ? even() : static_cast<std::size_t>(__builtin_ctzll(left)), count};
  }

 private:
  /// Where characters begin before the first odd one.
  Mask wanted() const { return odd == 0 ? starts : starts & (odd - 1) & ~odd; }
};

constexpr std::size_t kReadBeyond = 3;

}  // namespace

Utf8Decoded decodeUtf8(std::span<const std::uint8_t> bytes, char16_t* units, std::size_t room) {
  Utf8Decoded done;
  const auto add = [&](const Utf8Decoded& more) {
    done.bytes += more.bytes;
    done.units += more.units;
  };
  while (bytes.size() - done.bytes >= kBlock + kReadBeyond && done.units < room) {
    const Block block(bytes.data() + done.bytes);
    const bool fits = room - done.units >= kBlock;
    add(fits ? block.decode(units + done.units) : block.decode(units + done.units, room - done.units));
    if (block.odd != 0) return done;
  }
  while (done.bytes < bytes.size() && done.units < room) {
    // The zeros that fill it up are odd.
    std::uint8_t rest[kBlock + kReadBeyond] = {};
    const std::size_t left = std::min(kBlock, bytes.size() - done.bytes);
    std::memcpy(rest, bytes.data() + done.bytes, std::min(bytes.size() - done.bytes, sizeof rest));
    const Block block(rest);
    add(block.decode(units + done.units, room - done.units));
    if (block.even() < left) return done;
  }
  return done;
}

}  // namespace pluvo::text
