#include "unused_bytes.h"

#include "base/little_endian.h"
#include "unused_stretches.h"
#include "used_bytes.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

/// The bytes in use: pieces, pages and information blocks.
std::vector<Extent> usedBytes(const Text& text, const Text* glossary, std::span<const Piece> pieces) {
  std::vector<Extent> used;
  const auto addBlock = [&](const Fib& fib, std::size_t from) {
    used.push_back({from, fib.extentsAt() + fib.extents().size() * 8});
  };
  const auto addPieces = [&](std::span<const Piece> all) {
    for (const Piece& piece : all) used.push_back({piece.offset, piece.end()});
  };
  addBlock(text.fib, 0);
  addPieces(pieces);
  if (glossary != nullptr) {
    addBlock(glossary->fib, text.fib.glossary() * FormattedPages::kPage);
    addPieces(glossary->pieces.pieces());
  }
  forEachUsedStretch(text, [&](std::size_t from, std::size_t to) { used.push_back({from, to}); });
  return used;
}

/// Calls visit(piece, from, to) with the stretches of pieces that spans are made of.
template <class Visit>
void forEachStretch(const Text& text, const std::vector<text::Span>& spans, Visit visit) {
  const auto pieces = text.pieces.pieces();
  for (const text::Span& span : spans) {
    std::size_t i = text.pieces.indexAt(span.from);
    for (text::Position at = span.from; at < span.to; at = pieces[i++].to)
      visit(pieces[i], at, std::min(span.to, pieces[i].to));
  }
}

constexpr std::size_t kGram = 4;

char16_t unitIn(base::ByteSpan bytes, std::size_t at, bool narrow) {
  return narrow ? fromNarrow(bytes[at]) : base::get16(bytes, at);
}

/// All that four characters one after the other are in a text, as numbers.
class Grams {
 public:
  Grams(const Text& text, const std::vector<text::Span>& spans) {
    std::uint64_t gram = 0;
    std::size_t count = 0;
    text::Position reached = -1;
    forEachStretch(text, spans, [&](const Piece& piece, text::Position from, text::Position to) {
      if (from != reached) count = 0;
      reached = to;
      for (text::Position at = from; at < to; ++at) {
        gram = gram << 16U | unitIn(text.document, piece.offsetOf(at), piece.narrow);
        if (++count >= kGram) grams_.push_back(gram);
      }
    });
    std::ranges::sort(grams_);
    grams_.erase(std::unique(grams_.begin(), grams_.end()), grams_.end());
  }

  bool has(std::uint64_t gram) const { return std::ranges::binary_search(grams_, gram); }
  bool empty() const { return grams_.empty(); }

 private:
  std::vector<std::uint64_t> grams_;
};

/// Makes zeros of a text in a stretch. Bytes that are a character each may be something else by
/// chance: of them more are asked.
void blankText(const Grams& grams, std::span<std::uint8_t> bytes, bool narrow, std::size_t from,
               std::vector<bool>& blank) {
  const std::size_t width = narrow ? 1 : 2;
  const std::size_t least = narrow ? kGram * 2 : kGram;
  std::uint64_t gram = 0;
  std::size_t count = 0;
  std::size_t found = 0;  ///< characters up to here that are of the text
  for (std::size_t at = from; at + width <= bytes.size(); at += width) {
    gram = gram << 16U | unitIn(bytes, at, narrow);
    const bool is = ++count >= kGram && grams.has(gram);
    found = !is ? 0 : found == 0 ? kGram : found + 1;
    if (found < least) continue;
    const std::size_t all = found == least ? found * width : width;
    const auto end = blank.begin() + static_cast<std::ptrdiff_t>(at + width);
    std::fill(end - static_cast<std::ptrdiff_t>(all), end, true);
  }
}

}  // namespace

void blankUnused(const Text& text, const Text* glossary, const std::vector<text::Span>& gone,
                 const std::vector<Piece>& pieces, std::span<std::uint8_t> stream) {
  std::vector<Extent> extents;
  forEachStretch(text, gone, [&](const Piece& piece, text::Position from, text::Position to) {
    extents.push_back({piece.offsetOf(from), piece.offsetOf(to)});
  });
  if (extents.empty()) return;
  std::ranges::sort(extents, {}, &Extent::from);
  std::vector<Extent> used = usedBytes(text, glossary, pieces);
  Unused unused(used);
  for (const Extent& extent : extents) {
    unused.forEachIn(extent, [&](std::size_t from, std::size_t to) {
      std::fill(stream.begin() + static_cast<std::ptrdiff_t>(from),
                stream.begin() + static_cast<std::ptrdiff_t>(to), std::uint8_t{0});
    });
  }

  const Grams grams(text, gone);
  if (grams.empty()) return;
  Unused rest(std::move(used));
  rest.forEachIn({0, stream.size()}, [&](std::size_t from, std::size_t to) {
    const std::span<std::uint8_t> bytes = stream.subspan(from, to - from);
    if (bytes.size() < kGram || std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; }))
      return;
    std::vector<bool> blank(bytes.size());
    blankText(grams, bytes, true, 0, blank);
    blankText(grams, bytes, false, 0, blank);
    blankText(grams, bytes, false, 1, blank);
    for (std::size_t i = 0; i < bytes.size(); ++i)
      if (blank[i]) bytes[i] = 0;
  });
}

}  // namespace pluvo::doc
