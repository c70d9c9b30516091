#pragma once

#include "text/byte_places.h"
#include "text/original.h"
#include "text/partition.h"
#include "text/positions.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pluvo::text {

/// One piece of an edited text: units of the original, or units that an edit brought in.
struct Piece {
  Position length = 0;
  /// Where the piece lies in the original text; kNone for new text.
  Position original = kNone;
  /// New text only: where it lies in the added text …
  Position added = 0;
  /// … the original character whose formatting it takes …
  Position anchor = kNone;
  /// … and whether it stands after that character (true) or before or instead of it (false).
  bool afterAnchor = false;

  bool isNew() const { return original == kNone; }
  /// The units [from, to) of it.
  Piece part(Position from, Position to) const {
    Piece part = *this;
    (isNew() ? part.added : part.original) += from;
    part.length = to - from;
    return part;
  }
  static constexpr Position kNone = -1;
};

/// Which original character new text takes its formatting from.
struct Anchor {
  Position original = Piece::kNone;
  bool after = false;
  bool operator==(const Anchor&) const = default;
};

/// A document's text under edit: pieces of the untouched original and of added text, in document order. It is
/// at the same time the map from the text back to the file, since a format knows where each original
/// character's bytes lie.
///
/// Edits that move forward through the text cost O(1) amortised plus O(log pieces); finding a position is
/// O(log pieces). A position or span outside the text is a bug in the caller.
class PieceText {
 public:
  PieceText() : PieceText(OriginalText()) {}
  explicit PieceText(OriginalText original);

  Position length() const { return pieces_.length(); }
  const OriginalText& original() const { return original_; }
  char16_t at(Position position) const {
    const Piece piece = pieceAt(position);
    return piece.isNew() ? added_[static_cast<std::size_t>(piece.added)] : original_[piece.original];
  }
  std::u16string substring(Position from, Position to) const;
  void copy(Position from, Position to, char16_t* out) const;

  /// The piece that holds position, cut to begin there.
  Piece pieceAt(Position position) const;
  std::size_t pieceCount() const { return pieces_.count(); }
  /// Piece i of those in document order.
  Piece piece(std::size_t i) const {
    const auto part = pieces_.part(i);
    return cut(part, part.from, part.to);
  }
  /// The text as one stretch, where nothing was edited and it lies in units.
  std::optional<Stretch> wholeStretch() const {
    const bool isOriginal =
        pieces_.count() == 1 && !pieces_.value(0).isNew() && length() == original_.length();
    if (!isOriginal || original_.inBytes() != nullptr) return std::nullopt;
    return original_.stretch(0, length());
  }
  /// Places of the original where edits cut it, in order, if it lies in UTF-8. Of edits that do not go
  /// forward there are none.
  const BytePlaces& cuts() const { return cuts_; }
  /// Bytes of [from, to), and margins in front of them and after them.
  struct Bytes {
    std::span<const std::uint8_t> all;
    std::size_t from = 0;
    std::size_t to = 0;
    std::span<const std::uint8_t> inside() const { return all.subspan(from, to - from); }
  };
  /// The UTF-8 bytes of [from, to), which is not empty, where it lies in them in one piece with so many
  /// characters on both sides, or as many as the text has; none otherwise.
  std::optional<Bytes> bytesOf(Position from, Position to, Position margin = 0) const;
  /// The units of [from, to), which is not empty, where they lie in the original in one piece.
  std::optional<Stretch> stretchOf(Position from, Position to) const;
  /// The units of a new piece. Valid until the next edit.
  std::u16string_view addedText(const Piece& piece) const;

  /// Puts text in the place of [from, to). Throws std::length_error when positions would no longer suffice,
  /// leaving the text as it was.
  void replace(Position from, Position to, std::u16string_view text, const Anchor& anchor);

  /// The anchor that text put before (or after) the character at position inherits from it. It is the
  /// character's own original position, or, for new text, that of its anchor.
  Anchor anchorAt(Position position, bool after) const;

  /// Every piece in order, with the units of new ones: visit(const Piece&, std::u16string_view newText).
  template <class Visit>
  void forEachPiece(Visit visit) const {
    pieces_.forEachPart([&](Position from, Position to, const Source& source) {
      const Piece piece = cut({from, to, source}, from, to);
      visit(piece, piece.isNew() ? addedText(piece) : std::u16string_view());
    });
  }

  /// The pieces of [from, to) in order, cut to it: visit(Position start, const Piece&), which returns false
  /// to stop.
  template <class Visit>
  void forEachPiece(Position from, Position to, Visit visit) const {
    if (from >= to) return;
    pieces_.forEachPartFrom(from, [&](Position begin, Position partEnd, const Source& source) {
      const Position end = std::min(partEnd, to);
      if (!visit(from, cut({begin, partEnd, source}, from, end))) return false;
      from = end;
      return from < to;
    });
  }

  /// The stretches that make up [from, to) in order: visit(Position start, const Stretch&), which returns
  /// false to stop. A stretch lasts as long as the call.
  template <class Visit>
  void forEachStretch(Position from, Position to, Visit visit) const {
    forEachPiece(from, to,
                 [&](Position start, const Piece& piece) { return visitStretches(start, piece, visit); });
  }
  template <class Visit>
  bool visitStretches(Position start, const Piece& piece, Visit visit) const {
    if (piece.isNew())
      return visit(start, Stretch{nullptr, added_.data() + piece.added, piece.length, false});
    return original_.forEachStretch(
        piece.original, piece.original + piece.length,
        [&](Position offset, const Stretch& stretch) { return visit(start + offset, stretch); });
  }

  /// Whether the pieces cover the text and lie within their sources. For tests.
  bool check() const;

 private:
  /// What a piece refers to, whatever its length. There may be millions of them: eight bytes hold it all.
  class Source {
   public:
    Source() = default;
    explicit Source(Position original) : place_(static_cast<std::uint32_t>(original)) {}
    Source(Position added, const Anchor& anchor)
        : place_(static_cast<std::uint32_t>(added) | kNew),
          anchor_(anchor.original < 0
                      ? kNoAnchor
                      : static_cast<std::uint32_t>(anchor.original) * 2U + (anchor.after ? 1U : 0U)) {}

    bool isNew() const { return (place_ & kNew) != 0; }
    /// In the original, or in the added text.
    Position place() const { return static_cast<Position>(place_ & ~kNew); }
    /// New text only.
    Anchor anchor() const {
      if (anchor_ == kNoAnchor) return {};
      return {static_cast<Position>(anchor_ / 2), anchor_ % 2 != 0};
    }
    bool sameBesidesPlace(const Source& other) const {
      return isNew() == other.isNew() && anchor_ == other.anchor_;
    }
    /// Of the rest when so many units are cut off the front.
    Source remainder(Position cutOff) const {
      Source rest = *this;
      rest.place_ += static_cast<std::uint32_t>(cutOff);
      return rest;
    }

   private:
    static constexpr std::uint32_t kNew = 0x80000000;
    static constexpr std::uint32_t kNoAnchor = 0xFFFFFFFF;
    std::uint32_t place_ = 0;
    std::uint32_t anchor_ = kNoAnchor;
  };

  void insertNew(std::u16string_view text, const Anchor& anchor);
  void noteCuts();
  void noteCut(const BytesText& utf8, Position original);
  void joinAtGap();
  /// Where the piece in front of the gap, which is before, would go on.
  Position placeAfter(const Source& before) const;
  /// [from, to) of a piece.
  static Piece cut(const Partition<Source>::Place& piece, Position from, Position to) {
    const Source& source = piece.value;
    const Position place = source.place() + (from - piece.from);
    if (!source.isNew()) return {to - from, place, 0, Piece::kNone, false};
    const Anchor anchor = source.anchor();
    return {to - from, Piece::kNone, place, anchor.original, anchor.after};
  }

  OriginalText original_;
  std::u16string added_;
  Position lastAdded_ = 0;  ///< where the text added last lies, up to the end of added_
  Partition<Source> pieces_;
  BytePlaces cuts_;
};

}  // namespace pluvo::text
