#include "utf16_bytes.h"

#include "base/utf.h"

#include <algorithm>

namespace pluvo::formats::html {

namespace {

char16_t unitAt(std::string_view bytes, std::size_t at, bool isLittle) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  return static_cast<char16_t>(isLittle ? second << 8 | first : first << 8 | second);
}

}  // namespace

std::string utf8Of(std::string_view bytes, bool isLittle) {
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const char16_t unit = unitAt(bytes, at, isLittle);
    const char16_t next = at + 3 < bytes.size() ? unitAt(bytes, at + 2, isLittle) : u'\0';
    const bool isPair = base::isHighSurrogate(unit) && base::isLowSurrogate(next);
    base::appendUtf8(text, isPair ? base::joinSurrogates(unit, next) : unit);
    if (isPair) at += 2;
  }
  return text;
}

bool isThreeByteSurrogate(std::string_view bytes) {
  return bytes.size() >= 3 && bytes[0] == '\xED' && static_cast<unsigned char>(bytes[1]) >= 0xA0 &&
         base::isUtf8Follower(bytes[1]) && base::isUtf8Follower(bytes[2]);
}

void Utf16Output::write(base::ByteSpan piece) {
  rest_.append(reinterpret_cast<const char*>(piece.data()), piece.size());
  convert(3);
}

void Utf16Output::finish() {
  convert(0);
  flush();
}

void Utf16Output::convert(std::size_t kept) {
  std::size_t at = 0;
  while (at + kept < rest_.size()) {
    const std::string_view bytes = std::string_view(rest_).substr(at);
    const base::Utf8Character first = base::firstOfUtf8(bytes);
    const bool isHalf = first.bytes == 0 && isThreeByteSurrogate(bytes);
    std::u16string units;
    base::appendUtf16(units, isHalf ? base::pointOfUtf8<3>(bytes.data()) : first.point);
    for (const char16_t unit : units) put(unit);
    at += isHalf ? 3 : std::max<std::size_t>(first.bytes, 1);
  }
  rest_.erase(0, at);
}

void Utf16Output::put(char16_t unit) {
  const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
  const auto high = static_cast<std::uint8_t>(unit >> 8U);
  units_.push_back(isLittle_ ? low : high);
  units_.push_back(isLittle_ ? high : low);
  constexpr std::size_t kAtOnce = 65536;
  if (units_.size() >= kAtOnce) flush();
}

void Utf16Output::flush() {
  out_.write(units_);
  units_.clear();
}

}  // namespace pluvo::formats::html
