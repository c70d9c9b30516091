#pragma once

#include "line.h"

namespace pluvo::formats::html {

/// Writes the ends of paragraphs. Where line ends count, an end is a line end. Otherwise the blocks are
/// divided, or get an empty one where a paragraph would not exist. An end waits until something comes after
/// it, since the last one is the end that the page has.
class ParagraphEnds {
 public:
  explicit ParagraphEnds(Line& line) : line_(line) {}

  void begin();

  /// Takes the end of a paragraph: a piece of kind mark, or a line end's character.
  void take(const Piece& mark);
  /// A section's end, which ends its paragraph by itself.
  void passSection();
  bool isDue() const { return isDue_; }
  /// The end that waits has its bytes in front of the next piece.
  bool isDueAsItWas() const;
  /// Those bytes are copied with the ones after them.
  void copyDue();
  /// Writes the end that waits: the next piece belongs to the next paragraph.
  void writeDue();
  /// The page's own end follows.
  void finish();

 private:
  void writeDueLineEnd();
  void divide();
  void putEmpty();
  void putLook(std::int32_t inlines);

  Line& line_;
  bool isDue_ = false;
  Piece due_;
  bool afterSection_ = false;
  bool wasDivided_ = false;
};

}  // namespace pluvo::formats::html
