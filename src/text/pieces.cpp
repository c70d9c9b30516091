#include "text/pieces.h"

#include "base/same_bytes.h"
#include "utf8.h"

#include <algorithm>
#include <stdexcept>

namespace pluvo::text {

PieceText::PieceText(OriginalText original) : original_(std::move(original)) {
  if (original_.length() > 0) pieces_.append(original_.length(), Source(0));
}

std::u16string PieceText::substring(Position from, Position to) const {
  std::u16string text(static_cast<std::size_t>(std::max(to - from, 0)), u'\0');
  copy(from, to, text.data());
  return text;
}

std::optional<PieceText::Bytes> PieceText::bytesOf(Position from, Position to, Position margin) const {
  const BytesText* const utf8 = original_.utf8();
  if (utf8 == nullptr) return std::nullopt;
  // A character has two units at the most.
  const Position first = from - std::min(2 * margin, from);
  const Position last = to + std::min(2 * margin, length() - to);
  const Piece piece = pieceAt(first);
  if (piece.isNew() || piece.length < last - first) return std::nullopt;
  const Position original = piece.original + (from - first);
  const BytesText::Place begin = utf8->placeOf(original);
  const BytesText::Place end = utf8->placeOf(original + (to - from));
  if (begin.insidePair || end.insidePair || end.offset <= begin.offset) return std::nullopt;
  const std::span<const std::uint8_t> bytes = utf8->bytes();
  // At an end of the text the original may go on with units that were deleted.
  const BytesText::Place start = first == 0 ? utf8->placeOf(piece.original) : BytesText::Place{};
  if (start.insidePair) return std::nullopt;
  const std::size_t most =
      last == length() ? utf8->placeOf(piece.original + (last - first)).offset : bytes.size();
  std::size_t front = begin.offset;
  std::size_t back = end.offset;
  for (Position i = 0; i < margin && front > start.offset; ++i)
    front = utf8Before(bytes, start.offset, front);
  for (Position i = 0; i < margin && back < most; ++i) back += utf8At(bytes.first(most), back).bytes;
  return Bytes{bytes.subspan(front, back - front), begin.offset - front, end.offset - front};
}

std::optional<Stretch> PieceText::stretchOf(Position from, Position to) const {
  if (original_.inBytes() != nullptr) return std::nullopt;
  const Piece piece = pieceAt(from);
  if (piece.isNew() || piece.length < to - from) return std::nullopt;
  return original_.stretch(piece.original, piece.original + (to - from));
}

void PieceText::copy(Position from, Position to, char16_t* out) const {
  forEachPiece(from, to, [&](Position, const Piece& piece) {
    if (piece.isNew()) {
      addedText(piece).copy(out, static_cast<std::size_t>(piece.length));
    } else {
      original_.copy(piece.original, piece.original + piece.length, out);
    }
    out += piece.length;
    return true;
  });
}

Piece PieceText::pieceAt(Position position) const {
  const auto part = pieces_.partAt(position);
  return cut(part, position, part.to);
}

void PieceText::replace(Position from, Position to, std::u16string_view text, const Anchor& anchor) {
  const auto room = static_cast<std::size_t>(kMaxLength - (length() - (to - from)));
  if (text.size() > room || text.size() > static_cast<std::size_t>(kMaxLength) - added_.size()) {
    throw std::length_error("The text is too long.");
  }
  pieces_.erase(from, to, [](const Source& source, Position cutOff) { return source.remainder(cutOff); });
  if (original_.utf8() != nullptr) noteCuts();
  if (!text.empty()) insertNew(text, anchor);
  joinAtGap();
}

/// Matches have just told where their bytes lie; later it would have to be counted.
void PieceText::noteCuts() {
  const BytesText& utf8 = *original_.utf8();
  const Source* const before = pieces_.beforeGap();
  const Source* const after = pieces_.afterGap();
  if (before != nullptr && !before->isNew()) noteCut(utf8, placeAfter(*before));
  if (after != nullptr && !after->isNew()) noteCut(utf8, after->place());
}

void PieceText::noteCut(const BytesText& utf8, Position original) {
  if (cuts_.last() != nullptr && original <= cuts_.last()->position) return;
  const BytesText::Place place = utf8.placeOf(original);
  if (!place.insidePair) cuts_.push({original, static_cast<std::uint32_t>(place.offset)});
}

void PieceText::insertNew(std::u16string_view text, const Anchor& anchor) {
  const auto length = static_cast<Position>(text.size());
  const auto end = static_cast<Position>(added_.size());
  const Source* before = pieces_.beforeGap();
  if (before != nullptr && before->isNew() && before->anchor() == anchor && placeAfter(*before) == end) {
    added_ += text;
    lastAdded_ = end;
    pieces_.extend(length);
    return;
  }
  // A pass inserts the same text at every block; it is kept once.
  if (!base::sameUnits(std::u16string_view(added_).substr(static_cast<std::size_t>(lastAdded_)), text)) {
    lastAdded_ = end;
    added_ += text;
  }
  pieces_.insert(length, Source(lastAdded_, anchor));
}

void PieceText::joinAtGap() {
  const Source* before = pieces_.beforeGap();
  const Source* after = pieces_.afterGap();
  if (before == nullptr || after == nullptr) return;
  if (before->sameBesidesPlace(*after) && placeAfter(*before) == after->place()) pieces_.join();
}

Position PieceText::placeAfter(const Source& before) const {
  return before.place() + (pieces_.gap() - pieces_.startBeforeGap());
}

Anchor PieceText::anchorAt(Position position, bool after) const {
  const Piece piece = pieceAt(position);
  if (piece.isNew()) return {piece.anchor, piece.afterAnchor};
  return {piece.original, after};
}

bool PieceText::check() const {
  if (!pieces_.check()) return false;
  for (std::size_t i = 0; i < pieces_.count(); ++i) {
    const auto part = pieces_.part(i);
    const Position room = part.value.isNew() ? static_cast<Position>(added_.size()) : original_.length();
    if (part.value.place() > room - (part.to - part.from)) return false;
  }
  return true;
}

std::u16string_view PieceText::addedText(const Piece& piece) const {
  return std::u16string_view(added_).substr(static_cast<std::size_t>(piece.added),
                                            static_cast<std::size_t>(piece.length));
}

}  // namespace pluvo::text
