#pragma once

#include "encrypted_package.h"
#include "formats/format.h"
#include "package.h"
#include "stories.h"
#include "styles.h"

#include <memory>

namespace pluvo::docx {

/// A document's package and the way from its texts to the bytes of its parts.
class DocxSource : public formats::Source {
 public:
  /// The encryption around the package is null where there is none.
  DocxSource(Package package, Stories stories, Styles styles, std::unique_ptr<const EncryptedPackage> around);

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return true; }
  void write(const document::Document& document, base::Output& out) const override;
  std::vector<text::RunMap<formats::Appearance>> appearance() const override;
  void tellOtherTexts(const document::Story& story, formats::OtherTexts& texts) const override;

 private:
  std::string placeholderStyle() const;
  base::ByteSpan mainPart() const { return stories_.parts.front().part.utf8.view; }

  Package package_;
  Stories stories_;  ///< without their contents
  Styles styles_;
  std::unique_ptr<const EncryptedPackage> around_;
};

}  // namespace pluvo::docx
