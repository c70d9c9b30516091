#include "detection.h"

#include "files/problem.h"
#include "text/positions.h"
#include "token.h"

#include <algorithm>
#include <initializer_list>

namespace pluvo::plain {

namespace {

using files::ByteSpan;

bool startsWith(ByteSpan bytes, std::initializer_list<std::uint8_t> mark) {
  return bytes.size() >= mark.size() && std::ranges::equal(bytes.first(mark.size()), mark);
}

bool isUtf8(ByteSpan bytes) {
  while (!bytes.empty()) {
    const std::size_t run = bytes[0] < 0x80 ? std::max<std::size_t>(plainRun(bytes), 1) : 0;
    bytes = bytes.subspan(run);
    while (!bytes.empty() && bytes[0] >= 0x80) {
      const Character character = firstOfUtf8(bytes);
      if (!character.valid) return false;
      bytes = bytes.subspan(character.bytes);
    }
  }
  return true;
}

/// Whether these are characters of a text, most of them Latin, in 16-bit units.
template <Encoding kEncoding>
bool readsAsUtf16(ByteSpan bytes) {
  constexpr std::size_t kFewestUnits = 4;
  const std::size_t count = bytes.size() / 2;
  if (bytes.size() % 2 != 0 || count < kFewestUnits) return false;
  std::size_t latin = 0;
  bool pairOpen = false;
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t unit = utf16UnitAt<kEncoding>(bytes, 2 * i);
    const bool control = unit < 0x20 && (unit < u'\t' || unit > u'\r');
    const bool second = unit >= 0xDC00 && unit < 0xE000;
    if (control || unit >= 0xFFFE || second != pairOpen) return false;
    pairOpen = unit >= 0xD800 && unit < 0xDC00;
    if (unit < 0x100) ++latin;
  }
  return !pairOpen && latin >= count / 2;
}

Encoding encodingWithoutMark(ByteSpan bytes, const Survey& survey) {
  if (survey.lowest == 0) {  // as every Latin letter in UTF-16 has it
    if (readsAsUtf16<Encoding::utf16Little>(bytes)) return Encoding::utf16Little;
    if (readsAsUtf16<Encoding::utf16Big>(bytes)) return Encoding::utf16Big;
  }
  return survey.highest < 0x80 || isUtf8(bytes) ? Encoding::utf8 : Encoding::windows1252;
}

/// Before anything looks at all of the bytes.
void requireReachable(ByteSpan bytes, std::size_t bytesPerUnit) {
  if (bytes.size() / bytesPerUnit >= static_cast<std::size_t>(text::kMaxLength))
    throw files::DocumentError(files::Problem::tooLarge,
                               "The text has more than two thousand million characters; split the file.");
}

}  // namespace

Storage detect(ByteSpan bytes) {
  const bool wholeUtf32 = bytes.size() % 4 == 0;
  if (wholeUtf32 && (startsWith(bytes, {0xFF, 0xFE, 0, 0}) || startsWith(bytes, {0, 0, 0xFE, 0xFF})))
    throw files::DocumentError(
        files::Problem::unsupported,
        "The text is stored as UTF-32, which is not read here; save it as UTF-8 first.");
  const bool little = startsWith(bytes, {0xFF, 0xFE});
  const bool big = startsWith(bytes, {0xFE, 0xFF});
  requireReachable(bytes, little || big ? 2 : 1);
  if (little) return {Encoding::utf16Little, 2, surveyOf(bytes.subspan(2))};
  if (big) return {Encoding::utf16Big, 2, surveyOf(bytes.subspan(2))};
  if (startsWith(bytes, {0xEF, 0xBB, 0xBF}) && isUtf8(bytes))
    return {Encoding::utf8, 3, surveyOf(bytes.subspan(3))};
  const Survey survey = surveyOf(bytes);
  return {encodingWithoutMark(bytes, survey), 0, survey};
}

}  // namespace pluvo::plain
