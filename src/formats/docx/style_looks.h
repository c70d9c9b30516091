#pragma once

#include "formats/appearance.h"
#include "package.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace pluvo::docx {

/// The looks in a w:rPr or w:pPr; nothing where there are none.
struct SaidOfRun {
  std::optional<bool> bold;
  std::optional<bool> italic;
  std::optional<bool> underlined;
  std::optional<bool> struck;
};
struct SaidOfParagraph {
  std::optional<std::uint8_t> heading;
  std::optional<formats::Appearance::Alignment> alignment;
  std::optional<bool> rightToLeft;
  std::optional<std::uint8_t> listLevel;
};
SaidOfRun saidOfRun(std::string_view runProperties);
SaidOfParagraph saidOfParagraph(std::string_view paragraphProperties);

/// The looks that a style sheet's paragraph and character styles give. Defaults of the document and table
/// styles are not looked at.
class StyleLooks {
 public:
  StyleLooks() = default;
  /// The bytes of a sound w:styles part in UTF-8.
  explicit StyleLooks(std::string_view part);

  /// Of a paragraph in this style; empty for the default one.
  formats::Appearance ofParagraph(const std::string& style) const;
  /// Of text in a paragraph that looks like this, in a character style. Bold in both is bold in neither, as
  /// Word has it; so with italic.
  formats::Appearance withCharacterStyle(formats::Appearance paragraph, const std::string& style) const;

 private:
  struct Style {
    std::string basedOn;
    SaidOfRun run;
    SaidOfParagraph paragraph;
  };
  Style resolved(const std::string& id) const;

  std::unordered_map<std::string, Style> styles_;
  std::string defaultParagraphStyle_;
};

/// None where the package has no sound style sheet.
StyleLooks readStyleLooks(const Package& package);

}  // namespace pluvo::docx
