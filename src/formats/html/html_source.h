#pragma once

#include "document_reader.h"
#include "formats/format.h"

#include <memory>

namespace pluvo::formats::html {

/// The page as it was read: its bytes.
class HtmlSource final : public formats::Source {
 public:
  HtmlSource(std::unique_ptr<const Page> page, OldDocument old)
      : page_(std::move(page)), old_(std::move(old)) {}

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return true; }
  void write(const document::Document& document, base::Output& out) const override;
  void tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const override;
  std::vector<text::RunMap<formats::Appearance>> appearance() const override;

 private:
  std::unique_ptr<const Page> page_;
  OldDocument old_;
};

}  // namespace pluvo::formats::html
