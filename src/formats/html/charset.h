#pragma once

#include "base/bytes.h"
#include "code_pages/coding.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// How the bytes of a page stand for characters.
struct Charset {
  code_pages::Coding coding;
  std::string name;
  /// By a mark or a declaration. Without one, programs read other characters than ASCII differently, so new
  /// text is ASCII.
  bool isDeclared = false;
};

/// The character at the front of bytes, of which there is at least one; the replacement character for a byte
/// that is none.
struct Decoded {
  char32_t point = 0;
  std::uint8_t bytes = 1;
  bool isValid = true;
};
Decoded firstOf(const Charset& charset, std::string_view bytes);

/// Adds a character where the encoding has it; whether it has.
bool appendEncoded(std::string& bytes, char32_t point, const Charset& charset);

/// The bytes of a page as it is walked over: as the file has them, or UTF-8 of a file in UTF-16, a lone
/// surrogate being three bytes.
class Page {
 public:
  /// Throws errors::DocumentError (encoding).
  explicit Page(base::Bytes file);

  std::string_view bytes() const { return bytes_; }
  const Charset& charset() const { return charset_; }
  std::size_t fileSize() const { return file_.view.size(); }
  /// Gives back memory that is filled again from the file.
  void release() const { file_.release(); }

  /// Writes new bytes, in order, as the file has its own.
  void write(const std::vector<base::ByteSpan>& pieces, base::Output& out) const;

 private:
  base::Bytes file_;
  std::string converted_;
  std::string_view bytes_;
  std::size_t markLength_ = 0;
  Charset charset_;
};

/// How a file begins: as a page does whatever its name, or as one could under the name of one.
enum class Likeness : std::uint8_t { none, byName, certain, webArchive };
/// Named so, it is looked through to its first tag.
Likeness likenessOf(base::ByteSpan file, bool isNamedSo);

}  // namespace pluvo::formats::html
