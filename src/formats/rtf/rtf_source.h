#pragma once

#include "document_reader.h"
#include "formats/format.h"

#include <vector>

namespace pluvo::rtf {

/// The RTF document as it was read: its bytes.
class RtfSource final : public formats::Source {
 public:
  RtfSource(base::Bytes bytes, OldDocument old) : bytes_(std::move(bytes)), old_(std::move(old)) {}

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return true; }
  void write(const document::Document& document, base::Output& out) const override;
  void tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const override;
  std::vector<text::RunMap<formats::Appearance>> appearance() const override;

 private:
  std::string_view text() const {
    return {reinterpret_cast<const char*>(bytes_.view.data()), bytes_.view.size()};
  }

  base::Bytes bytes_;
  OldDocument old_;
};

}  // namespace pluvo::rtf
