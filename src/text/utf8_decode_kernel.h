#pragma once

// Decoding for one set of vector instructions; see vectors.h.

#include "text/utf8_decoding.h"
#include "utf8_block.h"

namespace pluvo::text {
namespace {

/// How many bytes behind a block are read, too.
constexpr std::size_t kReadBeyond = 2;

#if defined(__AVX512VBMI2__)

/// Writes the units of the characters that begin at the wanted bytes of a block; returns how many. There is
/// room for kBlock.
inline std::size_t writeUnits(const std::uint8_t* bytes, Mask wanted, char16_t* units) {
  constexpr std::size_t kLanes = 32;
  const auto lanes = [&](std::size_t from) {
    return _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + from)));
  };
  const auto of = [](unsigned value) { return _mm512_set1_epi16(static_cast<short>(value)); };
  const auto lastSix = [&](__m512i lane) { return _mm512_and_si512(lane, of(0x3F)); };
  char16_t* out = units;
  for (std::size_t from = 0; from < kBlock; from += kLanes) {
    const __m512i first = lanes(from);
    const __m512i second = lastSix(lanes(from + 1));
    const __m512i third = lastSix(lanes(from + 2));
    const __m512i two = _mm512_or_si512(_mm512_slli_epi16(_mm512_and_si512(first, of(0x1F)), 6), second);
    const __m512i three =
        _mm512_or_si512(_mm512_slli_epi16(first, 12), _mm512_or_si512(_mm512_slli_epi16(second, 6), third));
    __m512i unit = _mm512_mask_mov_epi16(first, _mm512_cmpge_epu16_mask(first, of(0xC0)), two);
    unit = _mm512_mask_mov_epi16(unit, _mm512_cmpge_epu16_mask(first, of(0xE0)), three);
    const auto starts = static_cast<__mmask32>(wanted >> from);
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi16(starts, unit));
    out += __builtin_popcount(starts);
  }
  return static_cast<std::size_t>(out - units);
}

#else

inline std::size_t writeUnits(const std::uint8_t* bytes, Mask wanted, char16_t* units) {
  using Lanes = std::uint16_t __attribute__((vector_size(32)));
  using Narrow = std::uint8_t __attribute__((vector_size(16)));
  constexpr std::size_t kLanes = 16;
  char16_t at[kBlock];  // the unit of a character that begins there
  for (std::size_t from = 0; from < kBlock; from += kLanes) {
    Lanes lanes[3];
    for (std::size_t i = 0; i < 3; ++i) {
      Narrow narrow;
      std::memcpy(&narrow, bytes + from + i, sizeof narrow);
      lanes[i] = __builtin_convertvector(narrow, Lanes);
    }
    const Lanes second = lanes[1] & 0x3F;
    const Lanes two = (lanes[0] & 0x1F) << 6 | second;
    const Lanes three = lanes[0] << 12 | second << 6 | (lanes[2] & 0x3F);
    const Lanes isLong = reinterpret_cast<Lanes>(lanes[0] >= 0xC0);
    const Lanes isThree = reinterpret_cast<Lanes>(lanes[0] >= 0xE0);
    const Lanes unit = (lanes[0] & ~isLong) | (two & isLong & ~isThree) | (three & isThree);
    std::memcpy(at + from, &unit, sizeof unit);
  }
  char16_t* out = units;
  for (; wanted != 0; wanted &= wanted - 1) *out++ = at[__builtin_ctzll(wanted)];
  return static_cast<std::size_t>(out - units);
}

#endif

/// A block, of which kReadBeyond bytes more can be read.
struct Utf8Block {
  const std::uint8_t* bytes;
  Mask odd;  ///< controls and first bytes of characters of two units
  Mask starts;
  bool isAscii;

  explicit Utf8Block(const std::uint8_t* at) : bytes(at) {
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

  /// Writes the units before the first odd byte. There is room for kBlock; returns how many.
  std::size_t decode(char16_t* units) const {
    if (!isAscii) return writeUnits(bytes, wanted(), units);
    for (std::size_t i = 0; i < kBlock; ++i) units[i] = bytes[i];
    return even();
  }
  /// Where the character of the n-th of these units begins.
  std::size_t placeOf(std::size_t n) const {
    Mask left = wanted();
    for (; n > 0; --n) left &= left - 1;
    return static_cast<std::size_t>(__builtin_ctzll(left));
  }

 private:
  /// Where characters begin before the first odd byte.
  Mask wanted() const { return odd == 0 ? starts : starts & (odd - 1) & ~odd; }
};

inline Utf8Decoded decode(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  std::size_t read = 0;
  std::size_t written = 0;
  while (size - read >= kBlock + kReadBeyond && room - written >= kBlock) {
    const Utf8Block block(bytes + read);
    written += block.decode(units + written);
    read += block.even();
    if (block.odd != 0) return {read, written};
  }
  while (read < size && written < room) {
    // The zeros that fill it up are odd.
    std::uint8_t rest[kBlock + kReadBeyond] = {};
    const std::size_t left = size - read;
    std::memcpy(rest, bytes + read, left < sizeof rest ? left : sizeof rest);
    const Utf8Block block(rest);
    char16_t made[kBlock];
    const std::size_t count = block.decode(made);
    if (count > room - written) {
      std::memcpy(units + written, made, (room - written) * sizeof *units);
      return {read + block.placeOf(room - written), room};
    }
    std::memcpy(units + written, made, count * sizeof *units);
    read += block.even();
    written += count;
    if (block.even() < (left < kBlock ? left : kBlock)) break;
  }
  return {read, written};
}

}  // namespace
}  // namespace pluvo::text
