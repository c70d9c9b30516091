#pragma once

#include "formats/format.h"

namespace pluvo::rtf {

/// Rich Text, .rtf, as word processors write it, under any name.
///
/// Text is what a word processor shows: bytes in the code page of the font in force, fields with code and
/// result, hidden text, tables. Characters by number replace their stand-ins for older programs. A picture,
/// formula or object is one character, a shape, note or comment as well. Headers, footers, notes, comments
/// and text boxes are stories of their own. What the document's tables and unknown groups hold is no text.
///
/// A document is edited by splices. No brace or control word between characters is moved or removed, but for
/// those of rows, fields, notes, comments and pictures that go. New text is ASCII with characters by number,
/// and takes the looks of its neighbour from the place it is put at. A highlight is set where it changes; a
/// colour that the table lacks is added to it.
class RtfFormat final : public formats::Format {
 public:
  std::string_view name() const override { return "rtf"; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::rtf
