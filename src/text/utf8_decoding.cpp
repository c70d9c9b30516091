#include "text/utf8_decoding.h"

#include "scan.h"
#include "utf8_decode_kernel.h"
#include "utf8_scan.h"

namespace pluvo::text {

Utf8Decoded decodeUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, char16_t* units,
                               std::size_t room) {
  return decode(bytes, size, units, room);
}

#if !defined(__x86_64__)

Utf8Decoded decodeUtf8Avx2(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  return decode(bytes, size, units, room);
}
Utf8Decoded decodeUtf8Avx512(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  return decode(bytes, size, units, room);
}

#endif

Utf8Decoded decodeUtf8(std::span<const std::uint8_t> bytes, char16_t* units, std::size_t room) {
  static const auto best = hasAvx512Compress() ? decodeUtf8Avx512
                           : hasAvx2()         ? decodeUtf8Avx2
                                               : decodeUtf8Anywhere;
  return best(bytes.data(), bytes.size(), units, room);
}

}  // namespace pluvo::text
