#pragma once

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

/// 0 to 255.
inline std::size_t slotOf(std::uint64_t head, std::uint64_t tail, std::size_t size) {
  const std::uint64_t mixed = (head ^ (tail * 0x9e3779b97f4a7c15U) ^ size) * 0xff51afd7ed558ccdU;
  return mixed >> 56U;
}

}  // namespace pluvo::xml
