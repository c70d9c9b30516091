#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>

/// Numbers in the bytes of a file, the lowest byte first. The place must lie within the bytes.
namespace pluvo::base {

template <typename Number>
Number get(ByteSpan bytes, std::size_t at) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i) value |= std::uint64_t{bytes[at + i]} << (8 * i);
  return static_cast<Number>(value);
}
inline std::uint16_t get16(ByteSpan bytes, std::size_t at) { return get<std::uint16_t>(bytes, at); }
inline std::uint32_t get32(ByteSpan bytes, std::size_t at) { return get<std::uint32_t>(bytes, at); }
inline std::uint64_t get64(ByteSpan bytes, std::size_t at) { return get<std::uint64_t>(bytes, at); }

template <typename Number>
void put(std::span<std::uint8_t> bytes, std::size_t at, Number value) {
  for (std::size_t i = 0; i < sizeof(Number); ++i)
    bytes[at + i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * i));
}

}  // namespace pluvo::base
