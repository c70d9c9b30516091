#pragma once

#include "encoding.h"
#include "files/bytes.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::plain {

/// The first character of a text that the encoding cannot hold.
std::optional<char32_t> firstWithoutPlace(Encoding encoding, std::u16string_view text);

/// Writes a text made of new units and of bytes that are copied, in one encoding.
class Writer {
 public:
  Writer(Encoding encoding, LineEnd lineEnd, files::Output& out)
      : encoding_(encoding), lineEnd_(lineEnd), out_(out) {}

  /// Whole tokens of a file in the same encoding. Calls pause every few megabytes.
  void copy(files::ByteSpan bytes, const std::function<void()>& pause);
  /// A character may be split between calls. Throws files::DocumentError (encoding) for one that has no
  /// place.
  void encode(std::u16string_view text);
  /// To be called behind the last unit.
  void finish();

 private:
  void encode(char16_t unit);
  void putLineEnd();
  void putPoint(char32_t point);
  void putUnit(char16_t unit);
  void putByte(unsigned byte) { encoded_.push_back(static_cast<std::uint8_t>(byte)); }
  void keepLineEndsApart(char16_t next);
  void requireWholeCharacter() const;
  void flush();

  Encoding encoding_;
  LineEnd lineEnd_;
  files::Output& out_;
  std::vector<std::uint8_t> encoded_;
  char16_t firstHalf_ = 0;            ///< of a surrogate pair, waiting for the second
  bool afterCarriageReturn_ = false;  ///< that is a whole line end
};

}  // namespace pluvo::plain
