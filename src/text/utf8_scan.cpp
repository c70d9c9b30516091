#include "utf8_scan.h"

#include "scan.h"
#include "text/clean_utf8.h"
#include "utf8_kernel.h"

namespace pluvo::text {

bool surveyUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan) {
  return survey(bytes, size, scan);
}
Utf8Step walkUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  return walk(bytes, size, from, units);
}
Utf8Step walkBackUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from,
                              std::size_t units) {
  return walkBack(bytes, size, from, units);
}
std::size_t countUtf8Anywhere(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to) {
  return count(bytes, size, from, to);
}
std::size_t cleanUtf8Anywhere(const std::uint8_t* bytes, std::size_t size) { return cleanBytes(bytes, size); }

#if !defined(__x86_64__)

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

#endif

bool surveyUtf8(const std::uint8_t* bytes, std::size_t size, Utf8Scan& scan) {
  return hasAvx2() ? surveyUtf8Avx2(bytes, size, scan) : surveyUtf8Anywhere(bytes, size, scan);
}
Utf8Step walkUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  return hasAvx2() ? walkUtf8Avx2(bytes, size, from, units) : walkUtf8Anywhere(bytes, size, from, units);
}
Utf8Step walkBackUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t units) {
  return hasAvx2() ? walkBackUtf8Avx2(bytes, size, from, units)
                   : walkBackUtf8Anywhere(bytes, size, from, units);
}
std::size_t countUtf8(const std::uint8_t* bytes, std::size_t size, std::size_t from, std::size_t to) {
  return hasAvx2() ? countUtf8Avx2(bytes, size, from, to) : countUtf8Anywhere(bytes, size, from, to);
}
std::size_t cleanUtf8(std::span<const std::uint8_t> bytes) {
  return hasAvx2() ? cleanUtf8Avx2(bytes.data(), bytes.size())
                   : cleanUtf8Anywhere(bytes.data(), bytes.size());
}

}  // namespace pluvo::text
