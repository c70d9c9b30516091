#pragma once

#include "base/bytes.h"
#include "encoding.h"
#include "errors/document_error.h"

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::plain {

/// The first character of a text that the encoding cannot hold.
std::optional<char32_t> firstWithoutPlace(const Coding& coding, std::u16string_view text);

bool holdsAll(const Coding& coding, std::u16string_view text);

/// Writes a text made of new units and of bytes that are copied, in one encoding.
class Writer {
 public:
  /// The name is the encoding's, for messages.
  Writer(const Coding& coding, std::string_view name, LineEnd lineEnd, base::Output& out)
      : coding_(coding), name_(name), lineEnd_(lineEnd), out_(out) {}

  /// Whole tokens of a file in the same encoding. Calls pause every few megabytes.
  void copy(base::ByteSpan bytes, const std::function<void()>& pause);
  /// A character may be split between calls. Throws errors::DocumentError (encoding) for one that has no
  /// place.
  void encode(std::u16string_view text);
  /// To be called after the last unit.
  void finish();

 private:
  void encode(char16_t unit);
  bool isBetweenCharacters() const { return firstHalf_ == 0 && !afterCarriageReturn_; }
  void putLineEnd();
  void putPoint(char32_t point);
  void putInCodePage(char32_t point);
  void putUnit(char16_t unit);
  void putByte(unsigned byte) { encoded_.push_back(static_cast<std::uint8_t>(byte)); }
  void keepLineEndsApart(char16_t next);
  void requireWholeCharacter() const;
  void flush();

  bool isUtf16() const { return plain::isUtf16(coding_.encoding); }
  char16_t unitAt(base::ByteSpan bytes, std::size_t at) const;
  errors::DocumentError cutInTwo() const;

  Coding coding_;
  std::string_view name_;
  LineEnd lineEnd_;
  base::Output& out_;
  std::vector<std::uint8_t> encoded_;
  std::u16string known_;                  ///< the text encoded last …
  std::vector<std::uint8_t> knownBytes_;  ///< … and its bytes, which depend on nothing in front of it
  char16_t firstHalf_ = 0;                ///< of a surrogate pair, waiting for the second
  bool afterCarriageReturn_ = false;      ///< that is a whole line end
};

}  // namespace pluvo::plain
