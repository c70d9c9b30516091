#include "new_document.h"

#include "errors/document_error.h"

#include <algorithm>

namespace pluvo::rtf {

NewDocument::NewDocument(std::string_view file, const Tables& tables)
    : tables_(tables),
      coloursAt_(tables.coloursAt),
      head_(file.substr(0, coloursAt_)),
      rest_(file, coloursAt_) {
  for (std::size_t i = 1; i < places_.size(); ++i)
    places_[i] = tables.colours.placeOf(static_cast<std::uint8_t>(i));
}

void NewDocument::beginRest(bool isOpenEnded) {
  head_.copyTo(coloursAt_, false);
  out_ = &rest_;
  isHeadOpenEnded_ = isOpenEnded;
}

void NewDocument::putHighlight(std::uint8_t colour) {
  out_->put("\\highlight" + std::to_string(placeOf(colour)) + " ");
}

std::int32_t NewDocument::placeOf(std::uint8_t colour) {
  if (colour == 0) return 0;
  if (out_ == &head_) {
    throw errors::DocumentError(errors::Problem::unsupported,
                                "The document names its colours after text that is to be highlighted; "
                                "save it in a word processor first.");
  }
  std::int32_t& place = places_[colour];
  if (place > 0) return place;
  const std::int32_t old = tables_.colours.count() + (tables_.colours.endsOpen() ? 1 : 0);
  place = std::max(old, 1) + static_cast<std::int32_t>(newColours_.size());
  newColours_.push_back(colour);
  return place;
}

std::string NewDocument::newColours() const {
  if (newColours_.empty()) return {};
  std::string entries;
  for (const std::uint8_t colour : newColours_) entries += Colours::entryOf(colour);
  if (!tables_.hasColours) return "{\\colortbl;" + entries + "}";
  const bool lacksEnd = tables_.colours.endsOpen() || tables_.colours.count() == 0;
  return (lacksEnd ? ";" : "") + entries;
}

void NewDocument::write(base::Output& out) {
  for (const base::ByteSpan piece : head_.finish()) out.write(piece);
  const std::string colours = newColours();
  out.write({reinterpret_cast<const std::uint8_t*>(colours.data()), colours.size()});
  const std::vector<base::ByteSpan> rest = rest_.finish();
  if (colours.empty() && isHeadOpenEnded_ && rest_.continuesWord()) {
    constexpr std::uint8_t kBlank = ' ';
    out.write({&kBlank, 1});
  }
  for (const base::ByteSpan piece : rest) out.write(piece);
}

}  // namespace pluvo::rtf
