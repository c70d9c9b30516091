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

std::optional<Original> originalIn(const Medium& medium, std::string_view notation) {
  Original original{medium, std::string(notation), {}, {}};
  if (medium.format == nullptr) return original;
  const std::optional<base::Bytes> file = medium.file(notation, original.ranges);
  if (!file) return std::nullopt;
  original.file = *file;
  return original;
}

Kept Original::open() const {
  if (medium.format == nullptr) return Kept{notation::Sample(notation)};
  Hint all;
  all.allStories = true;
  Opened opened = medium.format->read(file, all);
  const std::shared_ptr<const Source> source = std::move(opened.source);
  const auto save = [=, medium = medium, file = file,
                     hint = opened.again](const document::Document& document) {
    base::MemoryOutput out;
    source->write(document, out);
    const base::Bytes written = base::Bytes::of(std::move(out.bytes()));
    const std::vector<document::Content> again = medium.format->read(written, hint).stories;
    EXPECT_EQ(document::differenceOf(document.snapshot(), again, [] {}), "");
    if (medium.damage != nullptr) {
      EXPECT_EQ(medium.damage(file, written), "");
    }
  };
  return Kept{notation::Sample(std::move(opened.stories), medium.place, ranges, source), save,
              source->holdsHighlight()};
}

std::optional<Kept> keptIn(const Medium& medium, std::string_view notation) {
  const std::optional<Original> original = originalIn(medium, notation);
  if (!original) return std::nullopt;
  return original->open();
}

}  // namespace pluvo::formats
