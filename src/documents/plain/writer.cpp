#include "writer.h"

#include "files/problem.h"
#include "token.h"

#include <algorithm>

namespace pluvo::plain {

using files::ByteSpan;

namespace {

bool isFirstHalf(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isSecondHalf(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char32_t joined(char16_t first, char16_t second) {
  return 0x10000 + (static_cast<char32_t>(first - 0xD800) << 10) + (second - 0xDC00);
}

files::DocumentError cutInTwo() {
  return {files::Problem::encoding,
          "The change cuts a character in two, and the file's encoding, UTF-8, has no place for half of one; "
          "extend the text to whole characters."};
}

char16_t unitAt(Encoding encoding, ByteSpan bytes, std::size_t at) {
  switch (encoding) {
    case Encoding::utf16Little:
      return utf16UnitAt<Encoding::utf16Little>(bytes, at);
    case Encoding::utf16Big:
      return utf16UnitAt<Encoding::utf16Big>(bytes, at);
    default:
      return bytes[at];
  }
}

}  // namespace

std::optional<char32_t> firstWithoutPlace(Encoding encoding, std::u16string_view text) {
  if (isUtf16(encoding)) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool pair = isFirstHalf(text[i]) && i + 1 < text.size() && isSecondHalf(text[i + 1]);
    const char32_t point = pair ? joined(text[i], text[i + 1]) : text[i];
    const bool half = !pair && (isFirstHalf(text[i]) || isSecondHalf(text[i]));
    if (encoding == Encoding::utf8 ? half : pair || !windows1252Of(text[i])) return point;
    if (pair) ++i;
  }
  return std::nullopt;
}

void Writer::copy(ByteSpan bytes, const std::function<void()>& pause) {
  if (bytes.empty()) return;
  keepLineEndsApart(unitAt(encoding_, bytes, 0));
  requireWholeCharacter();
  flush();
  constexpr std::size_t kAtOnce = std::size_t{8} * 1024 * 1024;
  for (ByteSpan rest = bytes; !rest.empty();) {
    const ByteSpan part = rest.first(std::min(rest.size(), kAtOnce));
    out_.write(part);
    rest = rest.subspan(part.size());
    if (part.size() == kAtOnce) pause();
  }
  afterCarriageReturn_ = unitAt(encoding_, bytes, bytes.size() - unitSize(encoding_)) == u'\r';
}

void Writer::encode(std::u16string_view text) {
  for (const char16_t unit : text) encode(unit);
  constexpr std::size_t kGathered = 4096;
  if (encoded_.size() > kGathered) flush();
}

void Writer::encode(char16_t unit) {
  if (isUtf16(encoding_) && unit != u'\r' && unit != u'\n') return putUnit(unit);
  if (firstHalf_ != 0 && isSecondHalf(unit)) {
    putPoint(joined(firstHalf_, unit));
    firstHalf_ = 0;
    return;
  }
  requireWholeCharacter();
  if (encoding_ == Encoding::utf8 && isSecondHalf(unit)) throw cutInTwo();
  if (encoding_ == Encoding::utf8 && isFirstHalf(unit)) {
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
  if (encoding_ == Encoding::windows1252) {
    const auto byte = windows1252Of(static_cast<char16_t>(point));
    if (!byte)
      throw files::DocumentError(
          files::Problem::encoding,
          "The new text holds a character that Windows-1252, the encoding of this file, does not "
          "have; save the file as UTF-8 first.");
    return putByte(*byte);
  }
  if (point < 0x80) return putByte(point);
  if (point < 0x800) {
    putByte(0xC0 | point >> 6);
  } else if (point < 0x10000) {
    putByte(0xE0 | point >> 12);
    putByte(0x80 | (point >> 6 & 0x3F));
  } else {
    putByte(0xF0 | point >> 18);
    putByte(0x80 | (point >> 12 & 0x3F));
    putByte(0x80 | (point >> 6 & 0x3F));
  }
  putByte(0x80 | (point & 0x3F));
}

void Writer::putUnit(char16_t unit) {
  afterCarriageReturn_ = false;
  if (!isUtf16(encoding_)) return putByte(unit);
  const bool little = encoding_ == Encoding::utf16Little;
  putByte(little ? unit & 0xFF : unit >> 8);
  putByte(little ? unit >> 8 : unit & 0xFF);
}

/// A line feed that comes to stand behind the carriage return of another line would make one line end of two.
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
