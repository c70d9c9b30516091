#pragma once

#include "line.h"
#include "paragraph_ends.h"

#include <vector>

namespace pluvo::formats::html {

/// Writes the pieces of a paragraph, each so that it is read as it is meant. What stays is copied with the
/// tags around it as far as nothing in front of it has changed.
class ParagraphWriter {
 public:
  ParagraphWriter(Markup& markup, const Page& page, Walker& walker)
      : line_(markup, page, walker), ends_(line_) {}

  void write(const Place& place, const std::vector<Piece>& pieces);

 private:
  void writePiece(const Piece& piece);
  void writeText(const Piece& piece);
  void writeCharacter(const Piece& piece);
  void writeSection(const Piece& piece);
  void writeNew(const Piece& piece);
  void passTag(const Piece& piece);
  void passAside(const Piece& piece);
  void passGap(const Piece& piece);

  void releaseHeld();
  bool copies(const Piece& piece);
  bool copyThrough(const Piece& piece);
  void arriveAt(const Piece& piece);
  bool isAsWritten(const Piece& piece, std::u16string_view units, bool wasBeside) const;
  void copyOrPut(const Piece& piece);
  void putAnew(const Piece& piece, std::u16string_view units);

  Line line_;
  ParagraphEnds ends_;
  bool isHeld_ = false;     ///< a line end that does not count is among the bytes that are to stay
  bool holdsText_ = false;  ///< any of the pieces does
};

}  // namespace pluvo::formats::html
