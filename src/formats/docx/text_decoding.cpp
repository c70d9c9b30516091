#include "text_decoding.h"

#include "base/utf.h"
#include "text/utf8_decoding.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace pluvo::docx {

namespace {

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

/// Signed, so that bytes beyond ASCII are below zero.
using Block = std::int8_t __attribute__((vector_size(16)));

bool isAnySet(Block block) {
  std::uint64_t halves[2];
  std::memcpy(halves, &block, sizeof block);
  return (halves[0] | halves[1]) != 0;
}

}  // namespace

Plainness plainnessOf(std::string_view utf8) {
  Block beyond = {};
  Block odd = {};
  const auto look = [&](const char* bytes) {
    Block block;
    std::memcpy(&block, bytes, sizeof block);
    beyond |= block;
    odd |= ((block < 0x20) & (block >= 0)) | (block == '&') | (block == ']');
  };
  if (utf8.size() < sizeof(Block)) {
    char filled[sizeof(Block)];
    std::memset(filled, ' ', sizeof filled);
    std::copy(utf8.begin(), utf8.end(), filled);
    look(filled);
  } else {
    for (std::size_t i = 0; i + sizeof(Block) < utf8.size(); i += sizeof(Block)) look(utf8.data() + i);
    look(utf8.data() + utf8.size() - sizeof(Block));
  }
  if (isAnySet(odd)) return Plainness::none;
  return isAnySet(beyond < 0) ? Plainness::wide : Plainness::ascii;
}

std::size_t unitsOf(std::string_view utf8) {
  std::size_t units = 0;
  for (const char c : utf8) {
    const auto byte = static_cast<std::uint8_t>(c);
    units += static_cast<std::size_t>(byte < 0x80 || byte >= 0xC0) + static_cast<std::size_t>(byte >= 0xF0);
  }
  return units;
}

std::size_t plainLength(std::string_view bytes) {
  std::size_t passed = 0;
#if defined(__SSE2__)
  // Vectors of signed bytes, in which those beyond ASCII are less than any other.
  const auto each = [](char c) { return _mm_set1_epi8(c); };
  for (; passed + sizeof(__m128i) <= bytes.size(); passed += sizeof(__m128i)) {
    const __m128i vector = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + passed));
    const __m128i special =
        _mm_or_si128(_mm_cmpeq_epi8(vector, each('&')), _mm_cmpeq_epi8(vector, each(']')));
    const __m128i stops = _mm_or_si128(special, _mm_cmpeq_epi8(vector, each('<')));
    const __m128i plain = _mm_andnot_si128(stops, _mm_cmpgt_epi8(vector, each(0x1F)));
    const auto isPlain = static_cast<unsigned>(_mm_movemask_epi8(plain));
    if (isPlain == 0xFFFF) continue;
    const std::size_t end = passed + static_cast<std::size_t>(std::countr_one(isPlain));
    return bytes[end] == '<' ? end : std::string_view::npos;
  }
#endif
  const std::size_t end = bytes.find('<', passed);
  const bool isAscii =
      end != std::string_view::npos && plainnessOf(bytes.substr(passed, end - passed)) == Plainness::ascii;
  return isAscii ? end : std::string_view::npos;
}

std::string_view withoutOuterBlanks(std::string_view printable) {
  const std::size_t front = std::min(printable.find_first_not_of(' '), printable.size());
  printable.remove_prefix(front);
  return printable.substr(0, printable.find_last_not_of(' ') + 1);
}

void outerBlanks(std::string_view bytes, std::string_view& leading, std::string_view& trailing) {
  constexpr std::string_view kBlanks = " \t\r\n";
  leading = bytes.substr(0, std::min(bytes.find_first_not_of(kBlanks), bytes.size()));
  const std::size_t last = bytes.find_last_not_of(kBlanks);
  trailing = bytes.substr(last == std::string_view::npos ? bytes.size() : last + 1);
}

void appendCodePoint(std::u16string& units, char32_t c) {
  base::appendUtf16(units, c == U'\n' || c == U'\r' ? U' ' : c);
}

void appendUtf8(std::u16string& units, std::string_view bytes) {
  const std::size_t start = units.size();
  units.resize(start + bytes.size() + text::kUtf8Spare);
  char16_t* out = units.data() + start;
  for (std::size_t i = 0; i < bytes.size();) {
    const std::string_view rest = bytes.substr(i);
    const text::Utf8Decoded decoded =
        text::decodeUtf8({reinterpret_cast<const std::uint8_t*>(rest.data()), rest.size()}, out,
                         rest.size() + text::kUtf8Spare);
    out += decoded.units;
    i += decoded.bytes;
    if (i == bytes.size()) break;
    const base::Utf8Character next = base::firstOfUtf8(bytes.substr(i));
    if (next.point > 0xFFFF) {
      *out++ = base::highSurrogateOf(next.point);
      *out++ = base::lowSurrogateOf(next.point);
    } else {
      *out++ = next.point == U'\t' ? u'\t' : u' ';
    }
    const bool isPair = bytes.substr(i).starts_with("\r\n");
    i += isPair ? 2 : std::max<std::size_t>(next.bytes, 1);  // whatever the bytes are, this ends
  }
  units.resize(static_cast<std::size_t>(out - units.data()));
}

void trimBlanks(std::u16string& units, std::string_view& bytes) {
  const auto last = std::find_if_not(units.rbegin(), units.rend(), isBlank);
  const auto after = static_cast<std::size_t>(last - units.rbegin());
  units.resize(units.size() - after);
  const auto front =
      static_cast<std::size_t>(std::find_if_not(units.begin(), units.end(), isBlank) - units.begin());
  units.erase(0, front);
  if (!bytes.empty()) bytes = bytes.substr(front, units.size());
}

}  // namespace pluvo::docx
