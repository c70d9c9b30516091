#include "earlier_texts.h"

#include "base/little_endian.h"

#include <algorithm>
#include <string>
#include <vector>

namespace pluvo::doc {

namespace {

std::u16string decoded(base::ByteSpan bytes, bool narrow) {
  std::u16string units;
  if (narrow) {
    for (const std::uint8_t byte : bytes) units.push_back(fromNarrow(byte));
  } else {
    for (std::size_t i = 0; i + 2 <= bytes.size(); i += 2) units.push_back(base::get16(bytes, i));
  }
  std::erase(units, u'\0');
  return units;
}

}  // namespace

void forEachEarlierText(const Text& text, const std::function<void(std::u16string_view)>& visit) {
  struct Used {
    std::size_t from;
    std::size_t to;
    const Piece* piece;  ///< null for a page of formatting
  };
  std::vector<Used> used;
  for (const Piece& piece : text.pieces.pieces()) used.push_back({piece.offset, piece.end(), &piece});
  if (used.empty()) return;
  const auto addPage = [&](std::size_t at) { used.push_back({at, at + FormattedPages::kPage, nullptr}); };
  text.characters.forEachPage(addPage);
  text.paragraphs.forEachPage(addPage);
  std::ranges::sort(used, {}, &Used::from);
  // Where text lay when the document was saved as a whole.
  const std::size_t to = std::min<std::size_t>(text.fib.textTo(), text.document.size());
  std::size_t at = text.fib.textFrom();
  bool isNarrow = text.pieces.pieces().front().narrow;
  const auto tellTo = [&](std::size_t end) {
    if (at >= std::min(end, to)) return;
    const std::u16string left = decoded(text.document.subspan(at, std::min(end, to) - at), isNarrow);
    if (!left.empty()) visit(left);
  };
  for (const Used& each : used) {
    tellTo(each.from);
    at = std::max(at, each.to);
    if (each.piece != nullptr) isNarrow = each.piece->narrow;
  }
  tellTo(to);
}

}  // namespace pluvo::doc
