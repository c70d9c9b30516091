#pragma once

#include "document/edit_script.h"
#include "document/story.h"
#include "markup.h"
#include "pieces.h"
#include "touched.h"
#include "walker.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pluvo::formats::html {

/// Takes down what a walk meets in a paragraph. Where edits touched that, makes pieces of it: the old text
/// that stays, the new text, and what lies between. Pieces that are not written go on in the next paragraph.
class ParagraphPieces {
 public:
  ParagraphPieces(const Walker& walker, const Markup& markup, const document::Story& story,
                  document::EditScript& script, const Touched& touched)
      : walker_(walker), markup_(markup), story_(story), script_(script), touched_(touched) {}

  /// A thing that the walk met, in the order of the bytes.
  struct Item {
    Piece::Kind kind = Piece::Kind::text;
    bool keepsBlanks = false;
    std::uint8_t colour = 0;
    std::int32_t inlines = -1;
    Extent bytes;
    text::Position from = 0;
    text::Position count = 0;
    std::size_t character = 0;  ///< in characters_
  };

  /// The walk comes to the first bytes of a paragraph, to its contents, and to its end.
  void begin();
  void text(Extent bytes);
  void character(const Character& character);
  void between(Piece::Kind kind, Extent bytes);
  void passMark() { ++position_; }

  /// In the original text: where the walk is, and where the paragraph began.
  text::Position position() const { return position_; }
  text::Position from() const { return from_; }
  /// Since the paragraph began, up to its end.
  const std::vector<Item>& items() const { return items_; }

  /// The paragraph stays as it is.
  void pass();
  void clear();
  /// The paragraph becomes pieces, with its mark; of a table that goes only its text does.
  void take(const Paragraph& paragraph, bool isTableGone);
  /// New text beside the mark of a row that was passed becomes pieces that lie at the place.
  void takeRowMark(std::size_t at);
  /// The last mark, for which the page has no bytes.
  void takeLastMark(std::size_t at);

  std::vector<Piece>& pieces() { return pieces_; }
  /// Those that hold text go on in the next paragraph.
  void carry();

 private:
  Item itemHere(Piece::Kind kind, Extent bytes) const;
  void takeItem(const Item& item, bool isTableGone);
  void keep(const document::Step& step, const Item& item);
  void put(const document::Step& step, const Item& item);
  void putAlike(const document::Step& step, const Item& item);
  void takeMark(text::Position at, std::size_t bytes, std::uint8_t colourWas);
  void lookOfMark(Piece& piece, text::Position at) const;
  std::int32_t placeFor(const document::Step& step, const Item& item) const;
  void passField(const Item& item);
  template <class Visit>
  void forEachColour(text::Position from, text::Position count, Visit visit);

  const Walker& walker_;
  const Markup& markup_;
  const document::Story& story_;
  document::EditScript& script_;
  const Touched& touched_;
  text::Position position_ = 0;
  text::Position from_ = 0;
  std::vector<Item> items_;
  std::vector<Character> characters_;
  std::vector<bool> inResult_;  ///< of the fields that are open
  bool hasFields_ = false;      ///< among the items
  std::vector<Piece> pieces_;   ///< those carried on from earlier paragraphs first
};

}  // namespace pluvo::formats::html
