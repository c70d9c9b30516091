#pragma once

#include "formats/format.h"

namespace pluvo::formats::html {

/// Web pages, .htm and .html, of HTML 4 and 5 and XHTML, as browsers, word processors and hands write them.
///
/// Text is what a word processor shows: paragraphs by their elements, white space folded, references as
/// characters, tables, hidden text. So are fields, notes, tabs and conditional comments, as Word writes them.
/// A picture, form field or object is one character. Titles, scripts, styles, templates and comments are no
/// text; nothing of a page is run or fetched.
///
/// A byte order mark tells the encoding, or a declaration, or the bytes are UTF-8. Otherwise it is
/// Windows-1252.
///
/// A page is edited by splices: outside the paragraphs that are touched every byte stays. New text is escaped
/// and in the declared encoding, or in references. A highlight is a span that Word and browsers show.
class HtmlFormat final : public formats::Format {
 public:
  std::string_view name() const override { return "html"; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::formats::html
