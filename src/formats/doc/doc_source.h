#pragma once

#include "document_writer.h"
#include "formats/format.h"
#include "word_file.h"

#include <memory>
#include <vector>

namespace pluvo::doc {

/// The document as it was read: its streams, and where its text lies in them.
struct Opened {
  Opened(base::Bytes bytes, const formats::Hint& hint) : streams(Streams::open(std::move(bytes), hint)) {}

  Streams streams;
  Text text{streams, 0};
};

class DocSource final : public formats::Source {
 public:
  DocSource(std::shared_ptr<const Opened> opened, std::vector<OldStory> stories)
      : opened_(std::move(opened)), stories_(std::move(stories)) {}

  std::optional<std::string> refusesText(std::u16string_view newText) const override;
  bool holdsHighlight() const override { return true; }
  void write(const document::Document& document, base::Output& out) const override;
  std::vector<text::RunMap<formats::Appearance>> appearance() const override;
  void tellOtherTexts(const document::Story& mainText, formats::OtherTexts& texts) const override;

 private:
  std::shared_ptr<const Opened> opened_;
  std::vector<OldStory> stories_;
};

}  // namespace pluvo::doc
