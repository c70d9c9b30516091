#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pluvo::text {

struct Utf8Decoded {
  std::size_t bytes = 0;  ///< that were read
  std::size_t units = 0;  ///< that were written
};

/// With room for so many units more than there are bytes, decoding is quickest.
inline constexpr std::size_t kUtf8Spare = 64;

/// Decodes bytes that are known to be UTF-8, up to the first control character or character of two units, to
/// the end, or until room is filled. Then the last bytes of a character may be left; who goes on from there
/// passes over them. The order of scripts costs nothing: no branch depends on how long a
/// character is.
Utf8Decoded decodeUtf8(std::span<const std::uint8_t> bytes, char16_t* units, std::size_t room);

}  // namespace pluvo::text
