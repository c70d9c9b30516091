#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Short byte strings as numbers: up to 16 bytes are known by their length, head and tail.
namespace pluvo::xml {

template <typename Word>
std::uint64_t load(const char* from) {
  Word word;
  std::memcpy(&word, from, sizeof word);
  return word;
}

/// The bytes must not be empty.
inline std::uint64_t headOf(std::string_view bytes) {
  const char* const first = bytes.data();
  const std::size_t size = bytes.size();
  if (size >= 8) return load<std::uint64_t>(first);
  if (size >= 4) return load<std::uint32_t>(first) | load<std::uint32_t>(first + size - 4) << 32U;
  return load<std::uint8_t>(first) | load<std::uint8_t>(first + size / 2) << 8U |
         load<std::uint8_t>(first + size - 1) << 16U;
}

inline std::uint64_t tailOf(std::string_view bytes) {
  return bytes.size() >= 8 ? load<std::uint64_t>(bytes.data() + bytes.size() - 8) : 0;
}

/// How many slots a memory of tags or names is to have for a text of so many bytes: a power of two. Most
/// parts are small, and clearing more memory than they have bytes would cost more than reading them.
inline std::size_t slotsFor(std::size_t textSize) {
  return std::clamp<std::size_t>(std::bit_ceil(textSize / 256), 16, 256);
}

/// The upper bits depend on all of the string.
inline std::uint64_t mixed(std::uint64_t head, std::uint64_t tail, std::uint64_t size) {
  return (head ^ (tail * 0x9e3779b97f4a7c15U) ^ size) * 0xff51afd7ed558ccdU;
}

/// Which of so many slots, which are a power of two and at most 256.
inline std::size_t slotOf(std::uint64_t head, std::uint64_t tail, std::size_t size, std::size_t slots) {
  return (mixed(head, tail, size) >> 56U) & (slots - 1);
}

}  // namespace pluvo::xml
