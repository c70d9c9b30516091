// Compiled with -mavx2 -mpopcnt; see CMakeLists.txt.

#include "utf8_scan.h"

#if defined(__AVX2__)

#include "utf8_decode_kernel.h"
#include "utf8_kernel.h"

namespace pluvo::text {

bool surveyUtf8Avx2(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan) {
  return survey(bytes, size, scan);
}
Utf8Step walkUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  return walk(bytes, size, from, units);
}
Utf8Step walkBackUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  return walkBack(bytes, size, from, units);
}
std::size_t countUtf8Avx2(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to) {
  return count(bytes, size, from, to);
}
std::size_t cleanUtf8Avx2(const std::uint8_t* bytes, std::size_t size) { return cleanBytes(bytes, size); }
Utf8Decoded decodeUtf8Avx2(const std::uint8_t* bytes, std::size_t size, char16_t* units, std::size_t room) {
  return decode(bytes, size, units, room);
}

}  // namespace pluvo::text

#endif
