#include "formats/media/media.h"

#include "document/same_document.h"

#include <gtest/gtest.h>

namespace pluvo::formats {

const std::vector<Medium>& media() {
  static const std::vector<Medium> all = {{"memory", nullptr, nullptr, nullptr, true},
                                          docxMedium(),
                                          docxNoteMedium(),
                                          docxBoxMedium(),
                                          rtfMedium(),
                                          docMedium(),
                                          htmlMedium(),
                                          htmlNoteMedium(),
                                          utf8Medium(),
                                          utf16Medium()};
  return all;
}

std::optional<Kept> keptIn(const Medium& medium, std::string_view notation) {
  if (medium.format == nullptr) return Kept{notation::Sample(notation)};
  notation::Ranges ranges;
  const std::optional<base::Bytes> file = medium.file(notation, ranges);
  if (!file) return std::nullopt;
  Hint all;
  all.allStories = true;
  Opened opened = medium.format->read(*file, all);
  const std::shared_ptr<const Source> source = std::move(opened.source);
  const auto save = [=, hint = opened.again](const document::Document& document) {
    base::MemoryOutput out;
    source->write(document, out);
    const base::Bytes written = base::Bytes::of(std::move(out.bytes()));
    const std::vector<document::Content> again = medium.format->read(written, hint).stories;
    EXPECT_EQ(document::differenceOf(document.snapshot(), again, [] {}), "");
    if (medium.damage != nullptr) {
      EXPECT_EQ(medium.damage(*file, written), "");
    }
  };
  return Kept{notation::Sample(std::move(opened.stories), medium.place, ranges, source), save,
              source->holdsHighlight()};
}

}  // namespace pluvo::formats
