#pragma once

#include "document/edit_script.h"
#include "new_pieces.h"
#include "new_text.h"
#include "walker.h"

namespace pluvo::doc {

/// Writes the new text of a story. Its characters take the formatting of the character beside them, its
/// paragraphs that of the paragraph they come to.
class NewTextWriter {
 public:
  /// Of a story at [from, to) among all texts.
  NewTextWriter(const Text& text, const Walker& walker, const document::Story& story, text::Span place,
                NewText& newText)
      : text_(text), walker_(walker), story_(story), place_(place), newText_(newText) {}

  /// Puts a text in front of the pieces that follow.
  void put(const document::Step& step, NewPieces& pieces);

 private:
  struct Characters {
    std::string properties;
    std::string ofPiece;  ///< what does not fit into them
  };

  Characters charactersAt(text::Position at, bool deleted);
  NewText::Paragraph paragraphAt(text::Position at, std::int32_t* depth);
  NewText::Paragraph paragraphFor(const document::Step& step, text::Position mark, text::Position beside);
  std::int32_t depthAt(text::Position edited) const;
  text::Position markAt(text::Position at);
  const Piece& pieceAt(text::Position at) const { return text_.pieces.pieces()[text_.pieces.indexAt(at)]; }

  const Text& text_;
  const Walker& walker_;
  const document::Story& story_;
  text::Span place_;
  NewText& newText_;
  FormattedPages::Place characterPlace_;
  FormattedPages::Place paragraphPlace_;
  text::Span paragraph_{0, 0};  ///< no mark lies in it but its last character
};

}  // namespace pluvo::doc
