#pragma once

#include "formats/format.h"
#include "package.h"
#include "reader.h"
#include "styles.h"
#include "xml/encoding.h"

namespace pluvo::docx {

/// A document's package and the way from its text to the bytes of the main part.
class DocxSource : public formats::Source {
 public:
  DocxSource(Package package, xml::Utf8Part part, BodyMap map, text::RunMap<std::uint8_t> highlight,
             Styles styles);

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return true; }
  void write(const document::Document& document, base::Output& out) const override;
  std::uint64_t unpackedSize() const override;
  text::RunMap<formats::Appearance> appearance() const override;
  void tellOtherTexts(const document::Story& model, formats::OtherTexts& texts) const override;

 private:
  std::string placeholderStyle() const;

  Package package_;
  xml::Utf8Part part_;
  BodyMap map_;
  text::RunMap<std::uint8_t> highlight_;  ///< as it was read
  Styles styles_;
};

}  // namespace pluvo::docx
