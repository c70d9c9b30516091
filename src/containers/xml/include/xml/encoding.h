#pragma once

#include "base/bytes.h"
#include "errors/document_error.h"

#include <string>
#include <string_view>
#include <vector>

namespace pluvo::xml {

/// How a part's bytes were written.
struct Encoding {
  std::string name = "UTF-8";  ///< as converters know it: "UTF-8", "UTF-16LE", "ISO-8859-1", "windows-1252"
  std::string mark;            ///< the byte order mark, as bytes; empty when there is none
  bool isUtf8() const { return name == "UTF-8"; }
};

struct Utf8Part {
  base::Bytes utf8;  ///< without byte order mark; the XML declaration is unchanged
  Encoding encoding;
};

/// A part as UTF-8. A byte order mark tells its encoding, or the first bytes of a UTF-16 or UTF-32
/// declaration, or the declared name. Without these it is UTF-8. UTF-8 is not copied, nor checked here.
/// Throws DocumentError: damaged (the bytes do not fit the encoding, or could not be written back the same),
/// unsupported (an unknown encoding).
Utf8Part toUtf8(const base::Bytes& part, std::string_view partName);

/// The way back: what toUtf8 gave, edited, in the part's own encoding. A character the encoding lacks becomes
/// a numeric reference, which XML allows in text and attribute values.
std::vector<std::uint8_t> fromUtf8(base::ByteSpan utf8, const Encoding& encoding);

}  // namespace pluvo::xml
