// Compiled for AVX-512 that moves units together; see CMakeLists.txt.

#include "utf8_scan.h"

#if defined(__AVX512VBMI2__)

#include "utf8_decode_kernel.h"

namespace pluvo::text {

Utf8Decoded decodeUtf8Avx512(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  return decode(bytes, size, units, room);
}

}  // namespace pluvo::text

#endif
