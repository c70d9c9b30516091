#pragma once

#include "formats/format.h"

namespace pluvo::docx {

/// Word documents as packages of XML: .docx, .docm, .dotx and .dotm, transitional and strict.
///
/// The text is the main part's: paragraphs and tables, nested ones too. Hyperlinks, content controls, smart
/// tags and tracked changes are looked into, deletions too. A link is no field and has no characters of its
/// own. A field, simple or complex, is character 19, its code, 20, its result and 21. A note's reference is
/// 2, a comment's 5, which is hidden, so that a text is found across it. A picture in the line is 1, a
/// floating one 8. A formula, which is highlighted in its runs, is 1 as well. The base of text with a
/// phonetic guide is text, unless its run holds something else too: then it is 1. Blanks at the ends of a
/// text element count only where it, or the nearest element around that says so, preserves them. Text is
/// hidden by its run or by the styles of run and paragraph; hiding by document defaults or table styles is
/// not looked at. Text boxes, headers, footers, notes and comments are stories of their own. The source tells
/// them, and what else the package holds.
///
/// A save leaves the relationship and the part of a deleted picture, which nothing shows any
/// more. A simple field's code, which is an attribute, takes no highlight.
class DocxFormat : public formats::Format {
 public:
  std::string_view name() const override { return "docx"; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::docx
