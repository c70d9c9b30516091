#include "new_text.h"

#include "errors/document_error.h"
#include "new_properties.h"

namespace pluvo::doc {

namespace {

/// Places of wide text have 30 bits.
constexpr std::size_t kMost = std::size_t{1} << 30U;

}  // namespace

std::uint32_t NewText::begin(const Paragraph& first) {
  if (isWithin_ && paragraphs_.back().look != first) close();
  return end();
}

void NewText::add(std::u16string_view units, const std::string& properties) {
  if (units.empty()) return;
  if (from_ + bytes_.size() + units.size() * 2 + 2 > kMost) {
    throw errors::DocumentError(
        errors::Problem::tooLarge,
        "The changes make the document larger than 1 GB, which documents of this kind "
        "(.doc) cannot be; put in a shorter text, or divide the document.");
  }
  for (const char16_t unit : units) {
    bytes_.push_back(static_cast<std::uint8_t>(unit));
    bytes_.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  if (!characters_.empty() && characters_.back().look.properties == properties) {
    characters_.back().to = end();
  } else {
    characters_.push_back({end(), {0, properties}});
  }
}

void NewText::endParagraph(const Paragraph& paragraph) {
  endWithin(paragraph);
  isWithin_ = false;
}

void NewText::endWithin(const Paragraph& paragraph) {
  if (isWithin_) {
    paragraphs_.back().to = end();
  } else {
    paragraphs_.push_back({end(), paragraph});
  }
  isWithin_ = true;
}

/// A mark that no piece stands for ends the run.
void NewText::close() {
  const std::string same = characters_.back().look.properties;
  add(u"\r", same);
  paragraphs_.back().to = end();
  isWithin_ = false;
}

void NewText::write(std::vector<std::uint8_t>& document) {
  if (isWithin_) close();
  document.insert(document.end(), bytes_.begin(), bytes_.end());
}

void NewText::writePages(FormattedPages::Of of, std::uint32_t from, PageWriter& pages) const {
  pages.add({from, from_, 0, {}});
  std::uint32_t at = from_;
  for (const Run& run : of == FormattedPages::Of::characters ? characters_ : paragraphs_) {
    pages.add({at, run.to, run.look.style, bytesOf(run.look.properties)});
    at = run.to;
  }
  pages.endPage();
}

}  // namespace pluvo::doc
