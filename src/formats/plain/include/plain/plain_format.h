#pragma once

#include "formats/format.h"

namespace pluvo::plain {

/// Plain text, .txt.
///
/// Encodings: UTF-8 and UTF-16 with byte order mark. UTF-8 without one, where at most one in ten characters
/// of several bytes is broken. A broken byte is the lone surrogate DC80 to DCFF, and stays. UTF-16 without
/// one, where the text is mostly Latin letters and cannot be anything else. Pure ASCII is UTF-8 unless the
/// hint says otherwise. Any other text has the encoding of the hint, which must have a meaning for every
/// byte. Without a hint the encoding is told from how the text reads (guess.h), or the text is refused. The
/// five bytes without a meaning in Windows-1252 are characters of the same number where the hint says
/// Windows-1252. UTF-32 is refused.
///
/// Lines: CR LF, LF and CR are each one paragraph mark, and stay as they are. The text ends with one more
/// mark, which stands for no byte, whether or not the last line has an end. The file is exactly the text
/// without it. An inserted mark becomes the most frequent line end of the file; of equals LF, CR LF, CR in
/// this order. In a file without line ends it is LF, or CR LF where the encoding is not UTF-8 without byte
/// order mark.
///
/// Every other character, controls and zeros included, is itself, in both directions; none of them has the
/// meaning it has in a document with structure. What the encoding cannot hold is refused. There is no
/// highlight.
///
/// UTF-8 is searched in the bytes of the file. So is text of one byte a character without CR LF. Any other
/// text is decoded once.
class PlainFormat final : public formats::Format {
 public:
  std::string_view name() const override { return "txt"; }
  /// By the extension, since bytes cannot tell: txt, text, asc, log, md, csv, tsv or none. A file with the
  /// signature of another kind is none.
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::plain
