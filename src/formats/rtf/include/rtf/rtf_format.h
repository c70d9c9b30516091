#pragma once

#include "formats/format.h"

namespace pluvo::rtf {

/// Rich Text, .rtf, as word processors write it, under any name.
///
/// Text is what a word processor shows: bytes in the code page of the font in force, characters by number in
/// place of what stands for them in older programs, fields with code and result, hidden text, tables. A
/// picture, formula or object is one character, a shape, note or comment as well; headers, footers, notes,
/// comments and text boxes are stories of their own. What the document's tables and unknown groups hold is no
/// text.
///
/// A document is edited by splices: no brace or control word that stands between characters is moved or
/// removed but for those of rows, fields, notes, comments and pictures that go. New text is ASCII with
/// characters by number, and takes the looks of its neighbour from the place it is put at. A highlight is set
/// where it changes; a colour that the table lacks is added to it.
class RtfFormat final : public formats::Format {
 public:
  std::string_view name() const override { return "rtf"; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::rtf
