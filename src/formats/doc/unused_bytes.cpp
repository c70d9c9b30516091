#include "unused_bytes.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

struct Extent {
  std::size_t from;
  std::size_t to;
};

/// What is in use, front to back: pieces, pages and the information block.
std::vector<Extent> usedBytes(const Text& text, const std::vector<Piece>& pieces) {
  std::vector<Extent> used = {{0, text.fib.extentsAt() + text.fib.extents().size() * 8}};
  for (const Piece& piece : pieces) used.push_back({piece.offset, piece.end()});
  const auto addPage = [&](std::size_t at) { used.push_back({at, at + FormattedPages::kPage}); };
  text.characters.forEachPage(addPage);
  text.paragraphs.forEachPage(addPage);
  std::ranges::sort(used, {}, &Extent::from);
  return used;
}

std::vector<Extent> bytesOf(const Text& text, const std::vector<text::Span>& spans) {
  std::vector<Extent> extents;
  const auto pieces = text.pieces.pieces();
  for (const text::Span& span : spans) {
    std::size_t i = text.pieces.indexAt(span.from);
    for (text::Position at = span.from; at < span.to; at = pieces[i++].to) {
      const text::Position end = std::min(span.to, pieces[i].to);
      extents.push_back({pieces[i].offsetOf(at), pieces[i].offsetOf(end)});
    }
  }
  std::ranges::sort(extents, {}, &Extent::from);
  return extents;
}

}  // namespace

void blankUnused(const Text& text, const std::vector<text::Span>& gone, const std::vector<Piece>& pieces,
                 std::span<std::uint8_t> stream) {
  const std::vector<Extent> used = usedBytes(text, pieces);
  auto next = used.begin();
  std::size_t reached = 0;
  for (const Extent& extent : bytesOf(text, gone)) {
    std::size_t at = std::max(extent.from, reached);
    reached = std::max(reached, extent.to);
    while (at < extent.to) {
      while (next != used.end() && next->to <= at) ++next;
      const std::size_t end = next == used.end() ? extent.to : std::clamp(next->from, at, extent.to);
      std::fill(stream.begin() + static_cast<std::ptrdiff_t>(at),
                stream.begin() + static_cast<std::ptrdiff_t>(end), std::uint8_t{0});
      at = next == used.end() ? extent.to : std::max(end, std::min(next->to, extent.to));
    }
  }
}

}  // namespace pluvo::doc
