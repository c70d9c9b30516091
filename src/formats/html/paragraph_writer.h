#pragma once

#include "markup.h"
#include "pieces.h"

#include <string>
#include <vector>

namespace pluvo::formats::html {

/// The place of a paragraph in the page.
struct Place {
  std::size_t from = 0;  ///< behind the last block's tag
  std::size_t to = 0;
  std::int32_t inlinesFrom = -1;  ///< that are open there
  std::int32_t inlinesTo = -1;
  Block block;                ///< the innermost one
  bool existsEmpty = false;   ///< the paragraph is there without text …
  bool onlyAlone = false;     ///< … unless another was put in front of it
  bool dividesBlock = false;  ///< a new paragraph in front of it gets a block of its own, like this one
};

/// Writes the pieces of a paragraph, each so that it is read as it is meant: what would fold is protected,
/// what would be taken for markup escaped.
class ParagraphWriter {
 public:
  ParagraphWriter(Markup& markup, const Page& page, Walker& walker)
      : markup_(markup), page_(page), walker_(walker) {}

  void write(const Place& place, const std::vector<Piece>& pieces);

 private:
  void writeText(const Piece& piece);
  void writeCharacter(const Piece& piece);
  void writeSection(const Piece& piece);
  void writeNew(const Piece& piece);
  void writeMark(const Piece& piece);
  void passTag(const Piece& piece);
  void passAside(const Piece& piece);
  void passGap(const Piece& piece);

  bool copies(const Piece& piece);
  bool copyThrough(const Piece& piece);
  void arriveAt(const Piece& piece);
  void settleMark();
  void settleLineEnd();
  void divide();
  void putEmpty();
  void putMarkLook(std::int32_t inlines);
  void putUnits(std::u16string_view units, const Piece& piece);
  void putUnit(char32_t point, const Piece& piece);
  void protectBlank(bool isInSpaceRun);
  void wrote(bool folds);
  void finish();

  bool keepsBlanks(std::int32_t inlines) const;
  bool isInComment(std::int32_t inlines) const;
  bool canCopy() const { return isClean_ && markup_.isAsBefore(); }

  Markup& markup_;
  const Page& page_;
  Walker& walker_;
  Place place_;
  bool isClean_ = true;   ///< all old bytes since the last ones copied are to stay
  bool isBeside_ = true;  ///< what was written last are the old bytes in front of the next ones
  bool folds_ = true;     ///< a bare blank would be no text here
  bool afterInvalid_ = false;
  bool atPreStart_ = false;  ///< a line end here would not count
  bool endsInLineEnd_ = false;
  bool isHeld_ = false;     ///< a line end that does not count is among the bytes that are to stay
  bool isMarkDue_ = false;  ///< a paragraph has ended, and nothing has come after it yet
  Piece dueMark_;
  bool afterSection_ = false;
  bool wasDivided_ = false;
  bool isOpen_ = false;     ///< a paragraph, since the last boundary
  bool holdsText_ = false;  ///< any of the pieces does
};

}  // namespace pluvo::formats::html
