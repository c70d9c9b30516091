#pragma once

#include "document/edit_script.h"
#include "document/kept.h"
#include "document/story.h"
#include "markup.h"
#include "paragraph_writer.h"
#include "pieces.h"
#include "reader.h"
#include "walker.h"

#include <string>
#include <vector>

namespace pluvo::formats::html {

/// Writes an edited page: walks over the old one, and writes the paragraphs that edits touched anew. What
/// lies between paragraphs stays, but for the tags of paragraphs that went into the next one, and for tables
/// and notes that went as a whole.
class Writer final : public Events {
 public:
  /// The bytes to leave out, after all that is written, and those in their place.
  struct Cut {
    Extent bytes;
    bool divides = false;  ///< text in front of it from what comes: something has to stand for it
    std::string in = {};
  };

  /// Of the texts in elements that main text passes by, what becomes of them, in order.
  Writer(const Page& page, const Part& part, const TextMap& map, const document::Story& story,
         std::vector<Cut> others);

  /// The new bytes of the part. They hold as long as this.
  std::vector<base::ByteSpan> write();

  void text(Extent bytes) override;
  void character(const Character& character) override;
  void gap(Extent bytes) override { between(Piece::Kind::gap, bytes); }
  void filler(Extent bytes) override { between(Piece::Kind::filler, bytes); }
  void inlineTag(Extent bytes) override { between(Piece::Kind::tag, bytes); }
  void aside(Aside kind, Extent bytes) override;
  void paragraphEnds(const Paragraph& paragraph) override;
  void blockBegins(const Block& block) override;
  void blockEnds(const Block& block, Extent endTag) override;
  void divides(Extent bytes) override;
  void tableBegins(const Block& table, std::size_t firstCell) override;
  void rowEnds() override;
  void tableEnds(Extent endTag, bool isWhole) override;
  void end(std::size_t at) override;

 private:
  /// The pieces met since the last block's tag.
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

  void between(Piece::Kind kind, Extent bytes);
  Item itemHere(Piece::Kind kind, Extent bytes) const;
  bool isTouched(text::Position from, text::Position to);
  bool isNearEdit(text::Position at);
  void beginAt(std::size_t at);
  void clearItems();

  // Pieces of the touched paragraph:
  void takeItems();
  void takeItem(const Item& item);
  void keep(const document::Step& step, const Item& item);
  void put(const document::Step& step, const Item& item);
  void putAlike(const document::Step& step, const Item& item);
  void takeMark(text::Position at, std::size_t bytes, bool hasMark, std::uint8_t colourWas);
  void lookOfMark(Piece& piece, text::Position at) const;
  std::int32_t placeFor(const document::Step& step, const Item& item) const;
  void passField(const Item& item);
  template <class Visit>
  void forEachColour(text::Position from, text::Position count, Visit visit);

  void writePieces(const Place& place);
  void vanish(const Place& place);
  void carry();

  void cutIn(Extent holder);
  void settleCuts();

  const Page& page_;
  const TextMap& map_;
  const document::Story& story_;
  document::EditScript script_;
  std::vector<text::Span> touched_;
  std::size_t nextTouched_ = 0;
  document::Dropped dropped_;
  Walker walker_;
  Markup markup_;
  ParagraphWriter paragraphs_;

  text::Position position_ = 0;       ///< in the original text
  text::Position paragraphFrom_ = 0;  ///< of the paragraph at hand
  std::size_t contentFrom_ = 0;       ///< its bytes
  std::int32_t inlinesFrom_ = -1;
  std::vector<Item> items_;
  std::vector<Character> characters_;
  std::vector<Piece> pieces_;  ///< those carried on from earlier paragraphs first
  std::vector<Cut> cuts_;
  std::vector<Cut> others_;
  /// A block that is open in the output.
  struct Open {
    bool holdsParagraph = false;
    bool wasDivided = false;  ///< before it
    bool lostTable = false;   ///< after which its own end stood
  };
  std::vector<Open> open_{{}};
  bool isDivided_ = true;       ///< a block's tag lies between the text written last and what comes
  std::vector<bool> inResult_;  ///< of the fields that are open
  bool hasFields_ = false;      ///< among the items

  std::size_t tablesMet_ = 0;
  std::size_t droppedTable_ = 0;  ///< one more than how many tables were open around it; 0 outside
  std::size_t openTables_ = 0;
  Extent droppedTag_;            ///< of the table that goes, empty where its element stays …
  std::size_t droppedCell_ = 0;  ///< … and its first cell
  std::size_t unclosedTables_ = 0;
  std::size_t lastTableEnd_ = 0;
};

}  // namespace pluvo::formats::html
