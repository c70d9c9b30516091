#pragma once

#include "cuts.h"
#include "document/edit_script.h"
#include "document/kept.h"
#include "document/story.h"
#include "markup.h"
#include "paragraph_pieces.h"
#include "paragraph_writer.h"
#include "reader.h"
#include "touched.h"
#include "walker.h"

#include <vector>

namespace pluvo::formats::html {

/// Writes an edited page: walks over the old one, and writes the paragraphs that edits touched anew. Bytes
/// between paragraphs stay, but for the tags of paragraphs that went into the next one. Tables and notes that
/// went as a whole go, too.
class Writer final : public Events {
 public:
  /// Of the texts in elements that main text passes by, what becomes of them, in order.
  Writer(const Page& page, const Part& part, const TextMap& map, const document::Story& story,
         std::vector<Cut> others);

  /// The new bytes of the part. They hold as long as this.
  std::vector<base::ByteSpan> write();

  void text(Extent bytes) override { text_.text(bytes); }
  void character(const Character& character) override { text_.character(character); }
  void gap(Extent bytes) override { text_.between(Piece::Kind::gap, bytes); }
  void filler(Extent bytes) override { text_.between(Piece::Kind::filler, bytes); }
  void inlineTag(Extent bytes) override { text_.between(Piece::Kind::tag, bytes); }
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
  void beginAt(std::size_t at);
  void keepInlines() { walker_.keepInlines(!text_.pieces().empty()); }
  bool endsAfterTable(const Paragraph& paragraph) const;
  Place placeOf(const Paragraph& paragraph) const;
  std::size_t fitting();
  void writePieces(const Place& place);
  void vanish(const Place& place);

  const TextMap& map_;
  const document::Story& story_;
  document::EditScript script_;
  Touched touched_;
  document::Dropped dropped_;
  Walker walker_;
  Markup markup_;
  ParagraphPieces text_;
  ParagraphWriter paragraphs_;
  Cuts cuts_;

  std::size_t contentFrom_ = 0;  ///< the bytes of the paragraph at hand
  std::int32_t inlinesFrom_ = -1;
  /// A block that is open in the output.
  struct Open {
    bool holdsParagraph = false;
    bool wasDivided = false;  ///< before it
    bool lostTable = false;   ///< after which its own end stood
  };
  std::vector<Open> open_{{}};
  bool isDivided_ = true;  ///< a block's tag lies between the text written last and the next

  std::size_t tablesMet_ = 0;
  std::size_t droppedTable_ = 0;  ///< one more than how many tables were open around it; 0 outside
  std::size_t openTables_ = 0;
  Extent droppedTag_;            ///< of the table that goes, empty where its element stays …
  std::size_t droppedCell_ = 0;  ///< … and its first cell
  std::size_t unclosedTables_ = 0;
  std::size_t lastTableEnd_ = 0;
};

}  // namespace pluvo::formats::html
