#include "writer.h"

#include "base/same_bytes.h"
#include "base/utf.h"
#include "errors/document_error.h"
#include "token.h"

#include <algorithm>

namespace pluvo::plain {

using base::ByteSpan;
using errors::DocumentError;
using errors::Problem;

namespace {

/// So many bytes go out together.
constexpr std::size_t kGathered = std::size_t{16} * 1024;

bool hasPlace(const Coding& coding, char32_t point) {
  switch (coding.encoding) {
    case Encoding::windows1252:
      return point <= 0xFFFF && windows1252Of(static_cast<char16_t>(point));
    case Encoding::codePage:
      return coding.page->encoded(point).has_value();
    default:
      return true;
  }
}

}  // namespace

bool holdsAll(const Coding& coding, std::u16string_view text) {
  if (coding.encoding == Encoding::utf8 && std::ranges::none_of(text, base::isSurrogate)) return true;
  return !firstWithoutPlace(coding, text);
}

std::optional<char32_t> firstWithoutPlace(const Coding& coding, std::u16string_view text) {
  if (isUtf16(coding.encoding)) return std::nullopt;
  while (!text.empty()) {
    const auto [point, units] = base::firstOfUtf16(text);
    const bool isMark = point == U'\r' || point == U'\n';  // written as a line end, whatever it is
    if (base::isSurrogate(point) || (!isMark && !hasPlace(coding, point))) return point;
    text.remove_prefix(units);
  }
  return std::nullopt;
}

DocumentError Writer::cutInTwo() const {
  return {Problem::encoding, "The change cuts a character in two, and the file's encoding, " +
                                 std::string(name_) +
                                 ", has no place for half of one; extend the text to whole characters."};
}

char16_t Writer::unitAt(ByteSpan bytes, std::size_t at) const {
  switch (coding_.encoding) {
    case Encoding::utf16Little:
      return utf16UnitAt<Encoding::utf16Little>(bytes, at);
    case Encoding::utf16Big:
      return utf16UnitAt<Encoding::utf16Big>(bytes, at);
    case Encoding::codePage:
      return static_cast<char16_t>(coding_.page->first(bytes.subspan(at, 1)).codePoint);
    default:
      return bytes[at];
  }
}

void Writer::copy(ByteSpan bytes, const std::function<void()>& pause) {
  if (bytes.empty()) return;
  keepLineEndsApart(unitAt(bytes, 0));
  requireWholeCharacter();
  afterCarriageReturn_ = unitAt(bytes, bytes.size() - unitSize(coding_.encoding)) == u'\r';
  if (bytes.size() <= kGathered) {
    encoded_.insert(encoded_.end(), bytes.begin(), bytes.end());
    if (encoded_.size() > kGathered) flush();
    return;
  }
  flush();
  constexpr std::size_t kAtOnce = std::size_t{8} * 1024 * 1024;
  for (ByteSpan rest = bytes; !rest.empty();) {
    const ByteSpan part = rest.first(std::min(rest.size(), kAtOnce));
    out_.write(part);
    rest = rest.subspan(part.size());
    if (part.size() == kAtOnce) pause();
  }
}

void Writer::encode(std::u16string_view text) {
  // A pass puts the same text in at every block.
  const bool dependsOnNothing = isBetweenCharacters();
  if (dependsOnNothing && base::sameUnits(text, known_)) {
    encoded_.insert(encoded_.end(), knownBytes_.begin(), knownBytes_.end());
  } else {
    const std::size_t before = encoded_.size();
    for (const char16_t unit : text) encode(unit);
    if (dependsOnNothing && isBetweenCharacters()) {
      known_ = text;
      knownBytes_.assign(encoded_.begin() + static_cast<std::ptrdiff_t>(before), encoded_.end());
    }
  }
  if (encoded_.size() > kGathered) flush();
}

void Writer::encode(char16_t unit) {
  if (isUtf16() && unit != u'\r' && unit != u'\n') return putUnit(unit);
  if (firstHalf_ != 0 && base::isLowSurrogate(unit)) {
    putPoint(base::joinSurrogates(firstHalf_, unit));
    firstHalf_ = 0;
    return;
  }
  requireWholeCharacter();
  if (!isUtf16() && base::isLowSurrogate(unit)) throw cutInTwo();
  if (!isUtf16() && base::isHighSurrogate(unit)) {
    firstHalf_ = unit;
  } else if (unit == u'\r' || unit == u'\n') {
    putLineEnd();
  } else {
    putPoint(unit);
  }
}

void Writer::finish() {
  requireWholeCharacter();
  flush();
}

void Writer::putLineEnd() {
  if (lineEnd_ == LineEnd::lineFeed) keepLineEndsApart(u'\n');
  if (lineEnd_ != LineEnd::lineFeed) putUnit(u'\r');
  if (lineEnd_ != LineEnd::carriageReturn) putUnit(u'\n');
  afterCarriageReturn_ = lineEnd_ == LineEnd::carriageReturn;
}

void Writer::putPoint(char32_t point) {
  afterCarriageReturn_ = false;
  if (coding_.encoding != Encoding::utf8) return putInCodePage(point);
  base::encodeUtf8(point, [this](std::uint8_t byte) { encoded_.push_back(byte); });
}

void Writer::putInCodePage(char32_t point) {
  if (coding_.encoding == Encoding::windows1252) {
    if (const auto byte = point > 0xFFFF ? std::nullopt : windows1252Of(static_cast<char16_t>(point)))
      return putByte(*byte);
  } else if (const auto encoded = coding_.page->encoded(point)) {
    encoded_.insert(encoded_.end(), encoded->bytes.begin(), encoded->bytes.begin() + encoded->count);
    return;
  }
  throw DocumentError(Problem::encoding, "The new text holds a character that " + std::string(name_) +
                                             ", the encoding of this file, does not have; save the file as "
                                             "UTF-8 first.");
}

void Writer::putUnit(char16_t unit) {
  afterCarriageReturn_ = false;
  if (coding_.encoding == Encoding::codePage) return putInCodePage(unit);
  if (!isUtf16()) return putByte(unit);
  const bool little = coding_.encoding == Encoding::utf16Little;
  putByte(little ? unit & 0xFF : unit >> 8);
  putByte(little ? unit >> 8 : unit & 0xFF);
}

/// A line feed that comes to stand after the carriage return of another line would make one line end of two.
/// A second line feed keeps them two.
void Writer::keepLineEndsApart(char16_t next) {
  if (afterCarriageReturn_ && next == u'\n') putUnit(u'\n');
}

void Writer::requireWholeCharacter() const {
  if (firstHalf_ != 0) throw cutInTwo();
}

void Writer::flush() {
  if (!encoded_.empty()) out_.write(encoded_);
  encoded_.clear();
}

}  // namespace pluvo::plain
