#pragma once

#include "formats/format.h"

namespace pluvo::doc {

/// Word's binary documents and templates of Word 97 and later (.doc, .dot), under any name. What else goes by
/// these names and has no format of its own is told by its content and refused by its name.
///
/// Each character of the file's text is one of the document's, in the same place. Letters are, and so are the
/// characters that stand for a picture, a note or a field's end. An edit goes into the streams as a fast save
/// does; deleted text stands nowhere in the new version.
class DocFormat final : public formats::Format {
 public:
  std::string_view name() const override { return "doc"; }
  bool recognises(base::ByteSpan bytes, std::string_view extension) const override;
  std::span<const std::string_view> extensions() const override;
  using formats::Format::read;
  formats::Opened read(base::Bytes bytes, const formats::Hint& hint) const override;
};

}  // namespace pluvo::doc
