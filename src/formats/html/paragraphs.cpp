#include "paragraphs.h"

namespace pluvo::formats::html {

void Paragraphs::end(std::size_t at, bool endsBlock) {
  Block& inner = walk_.blocks.inner();
  const bool isOwned = (traitsOf(inner.name) & kExistsEmpty) != 0 && !inner.hasParagraph;
  Paragraph paragraph;
  paragraph.at = at;
  paragraph.hasMark = isOpen_ || (isOwned && endsBlock && !endedSection_);
  paragraph.isOwned = isOwned;
  paragraph.endsBlock = endsBlock;
  paragraph.isFirst = !inner.hasParagraph && !inner.hasBlock;
  if (paragraph.hasMark) {
    if (!isOpen_) goOn();
    inner.hasParagraph = true;
    if (walk_.tables.isInside()) walk_.tables.inner().endsInParagraph = true;
  }
  if (endedSection_) inner.hasParagraph = true;
  const bool isTold = paragraph.hasMark || hadText_;
  isOpen_ = hadText_ = endedSection_ = false;
  folds_ = true;
  if (isTold) walk_.events.paragraphEnds(paragraph);
  markState_ = {};
}

void Paragraphs::endAtSection() {
  isOpen_ = false;
  endedSection_ = true;
}

void Paragraphs::addToCell(std::size_t at, const State& markState) {
  Paragraph paragraph;
  paragraph.at = at;
  paragraph.hasMark = paragraph.isCell = paragraph.endsBlock = true;
  walk_.blocks.inner().hasParagraph = true;
  markState_ = markState;
  walk_.events.paragraphEnds(paragraph);
  markState_ = {};
}

}  // namespace pluvo::formats::html
