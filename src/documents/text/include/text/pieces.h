#pragma once

#include "text/original.h"
#include "text/partition.h"
#include "text/positions.h"

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
  /// … and whether it stands behind that character (true) or before or instead of it (false).
  bool behindAnchor = false;

  bool isNew() const { return original == kNone; }
  static constexpr Position kNone = -1;
};

/// Which original character new text takes its formatting from.
struct Anchor {
  Position original = Piece::kNone;
  bool behind = false;
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
  char16_t at(Position position) const { return stretchAt(position)[0]; }
  std::u16string substring(Position from, Position to) const;
  void copy(Position from, Position to, char16_t* out) const;

  /// The contiguous stretch that begins at position and runs to the end of its piece. Valid until the next
  /// edit.
  Stretch stretchAt(Position position) const;
  /// The piece that holds position, cut to begin there.
  Piece pieceAt(Position position) const;
  std::size_t pieceCount() const { return pieces_.count(); }

  /// Puts text in the place of [from, to). Throws std::length_error when positions would no longer suffice,
  /// leaving the text as it was.
  void replace(Position from, Position to, std::u16string_view text, Anchor anchor);

  /// The anchor that text put before (or behind) the character at position inherits from it: the character's
  /// own original position, or, for new text, that of its anchor.
  Anchor anchorAt(Position position, bool behind) const;

  /// Every piece in order, with the units of new ones: visit(const Piece&, std::u16string_view newText).
  template <class Visit>
  void forEachPiece(Visit visit) const {
    for (std::size_t i = 0; i < pieces_.count(); ++i) {
      const Piece piece = whole(i);
      visit(piece, piece.isNew() ? addedText(piece) : std::u16string_view());
    }
  }

  /// The stretches that make up [from, to) in order: visit(Position start, const Stretch&), which returns
  /// false to stop.
  template <class Visit>
  void forEachStretch(Position from, Position to, Visit visit) const {
    for (std::size_t i = from < to ? pieces_.indexAt(from) : 0; from < to; ++i) {
      const Position end = std::min(pieces_.end(i), to);
      if (!visit(from, stretch(cut(i, from, end)))) return;
      from = end;
    }
  }

  /// Whether the pieces cover the text and lie in what they refer to. For tests.
  bool check() const;

 private:
  /// What a piece refers to, whatever its length.
  struct Source {
    Position place = 0;  ///< in the original, or in the added text
    Anchor anchor{};     ///< new text only
    bool isNew = false;
  };

  static Source remainder(const Source& source, Position cutOff);
  void insertNew(std::u16string_view text, Anchor anchor);
  void joinAtGap();
  /// Where the piece in front of the gap, which is before, would go on.
  Position placeBehind(const Source& before) const;
  Piece whole(std::size_t i) const { return cut(i, pieces_.start(i), pieces_.end(i)); }
  /// The part [from, to) of piece i.
  Piece cut(std::size_t i, Position from, Position to) const;
  Stretch stretch(const Piece& piece) const;
  std::u16string_view addedText(const Piece& piece) const;

  OriginalText original_;
  std::u16string added_;
  Position lastAdded_ = 0;  ///< where the text added last lies, up to the end of added_
  Partition<Source> pieces_;
};

}  // namespace pluvo::text
