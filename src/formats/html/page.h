#pragma once

#include "base/bytes.h"
#include "charset.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::formats::html {

/// The bytes of a page as it is walked over: those of the file, or UTF-8 of a file in UTF-16. A lone
/// surrogate is three bytes.
class Page {
 public:
  /// Throws errors::DocumentError (encoding).
  explicit Page(base::Bytes file);

  std::string_view bytes() const { return bytes_; }
  const Charset& charset() const { return charset_; }
  /// Gives back memory that is filled again from the file.
  void release() const { file_.release(); }

  /// Writes new bytes, in order, as the file has its own. Where nothing declares the encoding and they would
  /// be read in another one, a declaration is put in front of all text.
  void write(const std::vector<base::ByteSpan>& pieces, base::Output& out) const;

 private:
  void writeDeclared(const std::vector<base::ByteSpan>& pieces, base::Output& out) const;

  base::Bytes file_;
  std::string converted_;
  std::string_view bytes_;
  std::size_t markLength_ = 0;
  Charset charset_;
};

}  // namespace pluvo::formats::html
