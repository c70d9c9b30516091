#pragma once

#include "code_pages/coding.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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

/// The encoding of the first tag that names one in front of the body, or of an XML declaration. Throws
/// errors::DocumentError for one in which a tag could hide.
std::optional<Charset> declaredCharset(std::string_view bytes);

}  // namespace pluvo::formats::html
