#pragma once

#include "text/original.h"
#include "text/positions.h"

#include <functional>
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
};

/// A document's text under edit: pieces of the untouched original and of added text, in document order. It is
/// at the same time the map from the text back to the file, since a format knows where each original
/// character's bytes lie.
///
/// Edits that move forward through the text cost O(1) amortised plus O(log pieces); finding a position is
/// O(log pieces).
class PieceText {
 public:
  PieceText();
  explicit PieceText(OriginalText original);
  ~PieceText();
  PieceText(PieceText&&) noexcept;
  PieceText& operator=(PieceText&&) noexcept;

  Position length() const;
  const OriginalText& original() const;
  char16_t at(Position position) const;
  std::u16string substring(Position from, Position to) const;
  void copy(Position from, Position to, char16_t* out) const;

  /// The contiguous stretch that begins at position and runs to the end of its piece. Valid until the next
  /// edit.
  Stretch stretchAt(Position position) const;
  /// The piece that holds position, cut to begin there.
  Piece pieceAt(Position position) const;

  /// Puts text in the place of [from, to).
  void replace(Position from, Position to, std::u16string_view text, Anchor anchor);

  /// The anchor that text put before (or behind) the character at position inherits from it: the character's
  /// own original position, or, for new text, that of its anchor.
  Anchor anchorAt(Position position, bool behind) const;

  /// Every piece in order, with the units of new ones.
  void forEachPiece(const std::function<void(const Piece&, std::u16string_view newText)>& visit) const;

  bool changed() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pluvo::text
