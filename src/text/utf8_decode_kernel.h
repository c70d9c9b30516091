#pragma once

// Decoding for one set of vector instructions; see vectors.h.

#include "text/utf8_decoding.h"
#include "utf8_block.h"

namespace pluvo::text {
namespace {

#if defined(__AVX512VBMI2__)

/// A block of the bytes that are left. The zeros that fill it up are odd.
class Utf8Block {
 public:
  Utf8Block(const std::uint8_t* bytes, std::size_t left)
      : bytes_(bytes),
        left_(left),
        first_(loaded(bytes, left)),
        odd_(_mm512_cmplt_epu8_mask(first_, each(0x20)) | _mm512_cmpge_epu8_mask(first_, each(0xF0))),
        high_(_mm512_movepi8_mask(first_)),
        starts_(~high_ | _mm512_cmpge_epu8_mask(first_, each(0xC0))) {}

  Mask odd() const { return odd_; }
  Mask starts() const { return starts_; }
  bool isAscii() const { return high_ == 0; }

  void writeAscii(char16_t* units) const {
    _mm512_storeu_si512(units, lanesOf<0>(first_));
    _mm512_storeu_si512(units + kLanes, lanesOf<1>(first_));
  }
  std::size_t writeUnits(Mask wanted, char16_t* units) const {
    const __m512i lastSix = each(0x3F);
    const __m512i second = _mm512_and_si512(following(1), lastSix);
    const __m512i third = _mm512_and_si512(following(2), lastSix);
    const std::size_t written = writeLanes<0>(second, third, wanted, units);
    return written + writeLanes<1>(second, third, wanted, units + written);
  }

 private:
  static constexpr std::size_t kLanes = kBlock / 2;

  static __m512i each(unsigned byte) { return _mm512_set1_epi8(static_cast<char>(byte)); }
  static __m512i lane(unsigned value) { return _mm512_set1_epi16(static_cast<short>(value)); }
  /// What is not there is not read, either.
  static __m512i loaded(const std::uint8_t* bytes, std::size_t left) {
    return _mm512_maskz_loadu_epi8(left < kBlock ? (Mask{1} << left) - 1 : ~Mask{0}, bytes);
  }
  __m512i following(std::size_t n) const {
    return left_ < n ? _mm512_setzero_si512() : loaded(bytes_ + n, left_ - n);
  }
  template <int kHalf>
  static __m512i lanesOf(__m512i bytes) {
    // The extraction without a mask makes g++ 12 warn of its own header.
    return _mm512_cvtepu8_epi16(_mm512_maskz_extracti64x4_epi64(0xF, bytes, kHalf));
  }
  template <int kHalf>
  std::size_t writeLanes(__m512i second, __m512i third, Mask wanted, char16_t* units) const {
    const __m512i a = lanesOf<kHalf>(first_);
    const __m512i b = lanesOf<kHalf>(second);
    const __m512i two = _mm512_or_si512(_mm512_slli_epi16(_mm512_and_si512(a, lane(0x1F)), 6), b);
    const __m512i three = _mm512_or_si512(_mm512_or_si512(_mm512_slli_epi16(a, 12), _mm512_slli_epi16(b, 6)),
                                          lanesOf<kHalf>(third));
    __m512i unit = _mm512_mask_mov_epi16(a, _mm512_cmpge_epu16_mask(a, lane(0xC0)), two);
    unit = _mm512_mask_mov_epi16(unit, _mm512_cmpge_epu16_mask(a, lane(0xE0)), three);
    const auto starts = static_cast<__mmask32>(wanted >> kHalf * kLanes);
    _mm512_storeu_si512(units, _mm512_maskz_compress_epi16(starts, unit));
    return static_cast<std::size_t>(__builtin_popcount(starts));
  }

  const std::uint8_t* bytes_;
  std::size_t left_;
  __m512i first_;
  Mask odd_;
  Mask high_;
  Mask starts_;
};

#else

/// The same, for every other processor.
class Utf8Block {
 public:
  Utf8Block(const std::uint8_t* bytes, std::size_t left) : bytes_(bytes) {
    if (left < sizeof rest_) {
      std::memset(rest_, 0, sizeof rest_);
      std::memcpy(rest_, bytes, left);
      bytes_ = rest_;
    }
    const Bytes64 block(bytes_);
    const Mask high = block.high();
    isAscii_ = high == 0;
    odd_ = block.below(0x20) & ~high;
    if (isAscii_) return;
    odd_ |= high & ~block.highBelow(0xF0);
    starts_ = ~block.highBelow(0xC0);
  }
  Utf8Block(const Utf8Block&) = delete;
  Utf8Block& operator=(const Utf8Block&) = delete;

  Mask odd() const { return odd_; }
  Mask starts() const { return starts_; }
  bool isAscii() const { return isAscii_; }

  void writeAscii(char16_t* units) const {
    for (std::size_t i = 0; i < kBlock; ++i) units[i] = bytes_[i];
  }
  std::size_t writeUnits(Mask wanted, char16_t* units) const {
    using Lanes = std::uint16_t __attribute__((vector_size(32)));
    using Narrow = std::uint8_t __attribute__((vector_size(16)));
    constexpr std::size_t kLanes = 16;
    char16_t at[kBlock];  // the unit of a character that begins there
    for (std::size_t from = 0; from < kBlock; from += kLanes) {
      Lanes lanes[3];
      for (std::size_t i = 0; i < 3; ++i) {
        Narrow narrow;
        std::memcpy(&narrow, bytes_ + from + i, sizeof narrow);
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

 private:
  static constexpr std::size_t kReadBeyond = 2;

  std::uint8_t rest_[kBlock + kReadBeyond];  ///< the block, where less is left
  const std::uint8_t* bytes_;
  Mask odd_;
  Mask starts_ = ~Mask{0};
  bool isAscii_;
};

#endif

/// How many bytes come before the first odd one: a control or the first byte of a character of two units.
inline std::size_t evenIn(const Utf8Block& block) {
  return block.odd() == 0 ? kBlock : static_cast<std::size_t>(__builtin_ctzll(block.odd()));
}
/// Where characters begin before the first odd byte.
inline Mask wantedOf(const Utf8Block& block) {
  const Mask odd = block.odd();
  return odd == 0 ? block.starts() : block.starts() & (odd - 1) & ~odd;
}
/// Writes the units before the first odd byte. There is room for kBlock; returns how many.
inline std::size_t decodeBlock(const Utf8Block& block, char16_t* units) {
  if (!block.isAscii()) return block.writeUnits(wantedOf(block), units);
  block.writeAscii(units);
  return evenIn(block);
}
/// Where the character of the n-th of these units begins.
inline std::size_t placeOf(const Utf8Block& block, std::size_t n) {
  Mask left = wantedOf(block);
  for (; n > 0; --n) left &= left - 1;
  return static_cast<std::size_t>(__builtin_ctzll(left));
}

inline Utf8Decoded decode(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  std::size_t read = 0;
  std::size_t written = 0;
  while (read < size && written < room) {
    const std::size_t left = size - read;
    const Utf8Block block(bytes + read, left);
    if (room - written >= kBlock) {
      written += decodeBlock(block, units + written);
    } else {
      char16_t made[kBlock];
      const std::size_t count = decodeBlock(block, made);
      if (count > room - written) {
        std::memcpy(units + written, made, (room - written) * sizeof *units);
        return {read + placeOf(block, room - written), room};
      }
      std::memcpy(units + written, made, count * sizeof *units);
      written += count;
    }
    read += evenIn(block);
    if (evenIn(block) < (left < kBlock ? left : kBlock)) break;
  }
  return {read, written};
}

}  // namespace
}  // namespace pluvo::text
