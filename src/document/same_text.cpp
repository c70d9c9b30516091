#include "same_text.h"

#include "base/at_once.h"
#include "base/same_bytes.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cassert>
#include <optional>

namespace pluvo::document {

using text::BytesText;
using text::Piece;
using text::Position;
using text::Stretch;

namespace {

/// For a few units, which are not worth copying.
constexpr Position kFew = 64;

/// So many units are read between two pauses.
constexpr Position kWindow = 4 * 1024 * 1024;

bool equalUnits(const Stretch& a, const Stretch& b) {
  for (Position i = 0; i < a.length; ++i) {
    if (a[i] != b[i]) return false;
  }
  return true;
}

bool equal(const Stretch& a, const Stretch& b) {
  assert((a.narrow != nullptr || a.wide != nullptr) && (b.narrow != nullptr || b.wide != nullptr));
  const auto length = static_cast<std::size_t>(a.length);
  const bool bytesTell = a.narrow != nullptr && b.narrow != nullptr && a.lineFeedIsMark == b.lineFeedIsMark;
  if (bytesTell && base::sameBytes(a.narrow, b.narrow, length)) return true;
  if (a.wide != nullptr && b.wide != nullptr)
    return base::sameBytes(a.wide, b.wide, length * sizeof(char16_t));
  if (a.length <= kFew) return equalUnits(a, b);
  constexpr Position kAtOnce = 1024;
  std::array<char16_t, kAtOnce> left;
  std::array<char16_t, kAtOnce> right;
  for (Position at = 0; at < a.length; at += kAtOnce) {
    const Position to = std::min(a.length, at + kAtOnce);
    a.part(at, to).copyTo(left.data());
    b.part(at, to).copyTo(right.data());
    if (!std::equal(left.begin(), left.begin() + (to - at), right.begin())) return false;
  }
  return true;
}

/// Compares front to back. Where both versions lie in bytes of one encoding, kept pieces with the same bytes
/// are the same text, if they begin and end where characters do. Where they lie in the original is counted
/// anew, since the writer went by what edits and the original have noted.
class Comparison {
 public:
  Comparison(const text::PieceText& edited, const text::OriginalText& readBack,
             const std::function<void()>& pause)
      : edited_(edited),
        readBack_(readBack),
        pause_(pause),
        original_(edited.original().inBytes()),
        to_(readBack.inBytes()),
        areOfOneCoding_(original_ != nullptr && to_ != nullptr && original_->coding() == to_->coding()),
        cuts_(edited.cuts()) {}

  /// [from, to) of the edited text, as long as it goes on.
  bool isSame(Position from, Position to, const std::atomic<bool>& goesOn) {
    bool same = true;
    Position untilPause = kWindow;
    edited_.forEachPiece(from, to, [&](Position start, const Piece& piece) {
      for (Position done = 0; same && done < piece.length;) {
        const Position length = std::min(piece.length - done, untilPause);
        same = isSame(start + done, piece.part(done, done + length));
        done += length;
        untilPause -= length;
        if (untilPause > 0) continue;
        pause_();
        untilPause = kWindow;
        same = same && goesOn;
      }
      return same;
    });
    return same;
  }

 private:
  bool isSame(Position start, const Piece& piece) {
    if (to_ == nullptr && original_ == nullptr) return sameStretches(start, piece);
    if (to_ != nullptr && piece.isNew() && isKnown(piece)) return true;
    if (areOfOneCoding_ && !piece.isNew() && sameBytes(start, piece)) return true;
    const bool same = sameUnits(start, piece);
    if (same && to_ != nullptr && piece.isNew()) note(start, piece);
    return same;
  }

  /// Where both lie in units. New text that many pieces hold is compared with where it was read back before.
  bool sameStretches(Position start, const Piece& piece) {
    const Stretch back = readBack_.stretch(start, start + piece.length);
    if (!piece.isNew())
      return equal(edited_.original().stretch(piece.original, piece.original + piece.length), back);
    const bool isKnown = piece.added == known_.added && piece.length == known_.length;
    if (isKnown && equal(knownBack_, back)) return true;
    const std::u16string_view units = edited_.addedText(piece);
    if (!equal({nullptr, units.data(), piece.length}, back)) return false;
    known_ = piece;
    knownBack_ = back;
    return true;
  }

  bool sameUnits(Position start, const Piece& piece) {
    reached_.reset();
    return edited_.visitStretches(start, piece, [&](Position at, const Stretch& stretch) {
      return readBack_.forEachStretch(at, at + stretch.length, [&](Position offset, const Stretch& back) {
        return equal(stretch.part(offset, offset + back.length), back);
      });
    });
  }

  /// Where the bytes of a new text lie, which many pieces hold.
  void note(Position start, const Piece& piece) {
    const BytesText::Place begin = to_->placeOf(start);
    const BytesText::Place end = to_->placeOf(start + piece.length);
    if (begin.insidePair || end.insidePair || begin.offset > end.offset) return;
    known_ = piece;
    knownBytes_ = to_->bytes().subspan(begin.offset, end.offset - begin.offset);
    reached_ = end.offset;
  }
  bool isKnown(const Piece& piece) {
    const bool known = piece.added == known_.added && piece.length == known_.length;
    return known && reached_ && sameBytes(knownBytes_);
  }

  /// The pieces before it tell where a piece begins in the new bytes.
  bool sameBytes(Position start, const Piece& piece) {
    const BytesText::Place begin = placeOf(piece.original);
    const BytesText::Place end = placeOf(piece.original + piece.length);
    const BytesText::Place place = reached_ ? BytesText::Place{*reached_} : to_->placeOf(start);
    if (begin.insidePair || end.insidePair || place.insidePair || end.offset < begin.offset) return false;
    reached_ = place.offset;
    return sameBytes(original_->bytes().subspan(begin.offset, end.offset - begin.offset));
  }

  /// In the original, of a unit that is not in front of the last one asked for.
  BytesText::Place placeOf(Position position) {
    for (; position - walkedTo_.position > kWindow; pause_()) walkTo(walkedTo_.position + kWindow);
    const auto cut = cuts_.offsetOf(position);
    if (cut && isAt(position, *cut)) {
      walkedTo_ = {position, *cut};
      return {*cut};
    }
    return walkTo(position);
  }
  BytesText::Place walkTo(Position position) {
    const BytesText::Place place = original_->walk(walkedTo_.offset, position - walkedTo_.position);
    walkedTo_ = {position - (place.insidePair ? 1 : 0), place.offset};
    return place;
  }
  bool isAt(Position position, std::size_t offset) const {
    if (offset < walkedTo_.offset || offset > original_->bytes().size() || !original_->beginsUnit(offset))
      return false;
    const std::size_t units = original_->unitsIn(walkedTo_.offset, offset);
    return static_cast<std::int64_t>(units) == std::int64_t{position} - walkedTo_.position;
  }

  bool sameBytes(BytesText::Bytes wanted) {
    const std::size_t after = *reached_ + wanted.size();
    if (after > to_->bytes().size() || !to_->beginsUnit(after)) return false;
    if (!base::sameBytes(wanted.data(), to_->bytes().data() + *reached_, wanted.size())) return false;
    reached_ = after;
    return true;
  }

  const text::PieceText& edited_;
  const text::OriginalText& readBack_;
  const std::function<void()>& pause_;
  const BytesText* original_;
  const BytesText* to_;
  const bool areOfOneCoding_;
  text::BytePlaceCursor cuts_;
  /// A unit and where it begins, counted through the original.
  struct Walked {
    Position position = 0;
    std::size_t offset = 0;
  };
  Walked walkedTo_;
  Piece known_;  ///< the new text read back last
  Stretch knownBack_;
  BytesText::Bytes knownBytes_;
  std::optional<std::size_t>
      reached_;  ///< where the next piece begins in the bytes read back; a unit begins there
};

}  // namespace

bool sameText(const text::PieceText& edited, const text::OriginalText& readBack,
              const std::function<void()>& pause) {
  if (edited.length() != readBack.length()) return false;
  const auto length = static_cast<std::size_t>(edited.length());
  const std::size_t parts = base::partsOf(length);
  const auto beginOf = [&](std::size_t part) { return static_cast<Position>(length * part / parts); };
  std::atomic<bool> same = true;
  base::atOnce(parts, [&](std::size_t part) {
    Comparison comparison(edited, readBack, pause);
    if (!comparison.isSame(beginOf(part), beginOf(part + 1), same)) same = false;
  });
  return same;
}

}  // namespace pluvo::document
