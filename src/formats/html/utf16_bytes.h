#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// Byte order marks, with which a file in UTF-8 or UTF-16 may begin.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
inline constexpr std::string_view kLittleMark = "\xFF\xFE";
inline constexpr std::string_view kBigMark = "\xFE\xFF";

/// UTF-8 of UTF-16, a lone surrogate being three bytes. A last byte that is half of a unit is left out.
std::string utf8Of(std::string_view bytes, bool isLittle);
/// Whether such three bytes are at the front.
bool isThreeByteSurrogate(std::string_view bytes);

/// Turns such UTF-8 into UTF-16 of an order of bytes; a character may be divided between two pieces.
class Utf16Output {
 public:
  Utf16Output(bool isLittle, base::Output& out) : isLittle_(isLittle), out_(out) {}
  void write(base::ByteSpan piece);
  void finish();

 private:
  void convert(std::size_t kept);
  void put(char16_t unit);
  void flush();

  bool isLittle_;
  base::Output& out_;
  std::string rest_;
  std::vector<std::uint8_t> units_;
};

}  // namespace pluvo::formats::html
