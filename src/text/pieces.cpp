#include "text/pieces.h"

#include "base/same_bytes.h"

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

std::span<const std::uint8_t> PieceText::bytesOf(Position from, Position to) const {
  const Utf8Text* const utf8 = original_.utf8();
  if (utf8 == nullptr) return {};
  const Piece piece = pieceAt(from);
  if (piece.isNew() || piece.length < to - from) return {};
  const Utf8Text::Place begin = utf8->placeOf(piece.original);
  const Utf8Text::Place end = utf8->placeOf(piece.original + (to - from));
  if (begin.insidePair || end.insidePair || end.offset < begin.offset) return {};
  return utf8->bytes().subspan(begin.offset, end.offset - begin.offset);
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
  const auto part = pieces_.part(pieces_.indexAt(position));
  return cut(part, position, part.to);
}

void PieceText::replace(Position from, Position to, std::u16string_view text, const Anchor& anchor) {
  const auto room = static_cast<std::size_t>(kMaxLength - (length() - (to - from)));
  if (text.size() > room || text.size() > static_cast<std::size_t>(kMaxLength) - added_.size()) {
    throw std::length_error("The text is too long.");
  }
  pieces_.erase(from, to, [](const Source& source, Position cutOff) { return source.remainder(cutOff); });
  if (!text.empty()) insertNew(text, anchor);
  joinAtGap();
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
