#include "writer.h"

#include "story_parts.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pluvo::formats::html {

using text::Position;
using text::Span;
using Kind = Piece::Kind;

Writer::Writer(const Page& page, const Part& part, const TextMap& map, const document::Story& story,
               std::vector<Cut> others)
    : map_(map),
      story_(story),
      script_(story),
      touched_(script_, story, map.highlight),
      dropped_(script_),
      walker_(page, *this, part),
      markup_(page, part.bytes, walker_),
      text_(walker_, markup_, story, script_, touched_),
      paragraphs_(markup_, page, walker_),
      cuts_(std::move(others)),
      contentFrom_(part.bytes.begin) {}

std::vector<base::ByteSpan> Writer::write() {
  walker_.walk();
  cuts_.writeOut(markup_);
  return markup_.finish();
}

void Writer::aside(Aside kind, Extent bytes) {
  if (holdsStories(kind)) return cuts_.addWithin(bytes);
  text_.between(Kind::aside, bytes);
}

void Writer::beginAt(std::size_t at) {
  contentFrom_ = at;
  inlinesFrom_ = walker_.inlines().top();
  text_.begin();
  keepInlines();
}

void Writer::blockBegins(const Block& block) {
  open_.push_back({false, isDivided_});
  isDivided_ = true;
  beginAt(block.tag.end);
}

/// A block that would be an empty paragraph where its own went into another goes with it.
void Writer::blockEnds(const Block& block, Extent endTag) {
  const Open closed = open_.back();
  open_.pop_back();
  open_.back().holdsParagraph = open_.back().holdsParagraph || closed.holdsParagraph;
  const bool goes =
      (traitsOf(block.name) & kExistsEmpty) != 0 && block.hasParagraph && !closed.holdsParagraph;
  if (goes) {
    cuts_.add(block.tag, !closed.wasDivided);
    cuts_.add(endTag);
  }
  // An end tag that is left out divides nothing once the next element is gone.
  isDivided_ = isDivided_ || !endTag.empty();
  if (block.name == Name::table && endTag.empty()) {
    unclosedTables_ = endTag.begin == lastTableEnd_ ? unclosedTables_ + 1 : 1;
    lastTableEnd_ = endTag.begin;
  }
  beginAt(endTag.end);
}

void Writer::divides(Extent bytes) {
  isDivided_ = true;
  beginAt(bytes.end);
}

void Writer::paragraphEnds(const Paragraph& paragraph) {
  if (paragraph.hasMark) text_.passMark();
  const bool isGone = droppedTable_ > 0;
  const bool isTouched =
      !text_.pieces().empty() || touched_.in(text_.from(), text_.position()) || endsAfterTable(paragraph);
  if (!isGone && !isTouched) {
    open_.back().holdsParagraph = true;
    isDivided_ = isDivided_ && !paragraph.hasMark;
    text_.pass();
    return keepInlines();
  }
  text_.take(paragraph, isGone);
  if (!isGone) writePieces(placeOf(paragraph));
  text_.clear();
  keepInlines();
}

/// The end of a cell after a table that went is a paragraph of its own still.
bool Writer::endsAfterTable(const Paragraph& paragraph) const {
  return paragraph.isCell && open_.back().lostTable && open_.back().holdsParagraph;
}

Place Writer::placeOf(const Paragraph& paragraph) const {
  const Block& block = walker_.block();
  const unsigned traits = traitsOf(block.name);
  Place place;
  place.from = contentFrom_;
  place.to = paragraph.at;
  place.inlinesFrom = inlinesFrom_;
  place.inlinesTo = walker_.inlines().top();
  place.block = block;
  const bool endsCell = isCell(block.name) && paragraph.endsBlock && paragraph.isFirst;
  const bool isEmptyCell = paragraph.isCell && !endsAfterTable(paragraph);
  place.existsEmpty = (paragraph.isOwned && paragraph.endsBlock) || isEmptyCell || endsCell;
  place.onlyAlone = paragraph.isCell || endsCell;
  const bool isAlone = (traits & kDivision) != 0 && paragraph.isFirst && paragraph.endsBlock;
  place.dividesBlock = (paragraph.isOwned && (traits & kPreformatted) == 0) || isAlone;
  return place;
}

/// How many pieces can be written in the block at hand. New text after its paragraph's own end, or without
/// that, may be living where the block is deleted.
std::size_t Writer::fitting() {
  const std::vector<Piece>& pieces = text_.pieces();
  if (!walker_.block().deleted) return pieces.size();
  const auto own = std::ranges::find(pieces.rbegin(), pieces.rend(), Kind::mark, &Piece::kind).base();
  const auto living = std::find_if(
      own, pieces.end(), [](const Piece& piece) { return piece.kind == Kind::put && !piece.isDeleted; });
  return static_cast<std::size_t>(living - pieces.begin());
}

/// The paragraphs that end here are written. Text after the last end goes on in the next paragraph.
void Writer::writePieces(const Place& place) {
  std::vector<Piece>& pieces = text_.pieces();
  const auto ends = [](const Piece& piece) {
    if (piece.kind == Kind::mark) return true;
    if (piece.kind == Kind::put) return piece.units.find(text::kParagraphMark) != piece.units.npos;
    return piece.kind == Kind::character && (piece.character.kind == Character::Kind::paragraph ||
                                             piece.character.kind == Character::Kind::section);
  };
  const auto most = static_cast<std::ptrdiff_t>(pieces.size() - fitting());
  const auto last = std::find_if(pieces.rbegin() + most, pieces.rend(), ends);
  if (last == pieces.rend()) return vanish(place);
  // A piece of new text may have an end within.
  auto count = static_cast<std::size_t>(pieces.rend() - last);
  Piece& piece = pieces[count - 1];
  if (piece.kind == Kind::put) {
    const std::size_t own = piece.units.rfind(text::kParagraphMark) + 1;
    if (own < piece.units.size()) {
      Piece rest = piece;
      rest.units = piece.units.substr(own);
      piece.units = piece.units.substr(0, own);
      pieces.insert(pieces.begin() + static_cast<std::ptrdiff_t>(count), rest);
    }
  }
  const bool carriesText = std::any_of(pieces.begin() + static_cast<std::ptrdiff_t>(count), pieces.end(),
                                       [](const Piece& rest) { return rest.holdsText(); });
  if (!carriesText) count = pieces.size();
  std::vector<Piece> rest(pieces.begin() + static_cast<std::ptrdiff_t>(count), pieces.end());
  if (carriesText) {
    pieces.resize(count);
    pieces.emplace_back();  // the bytes of the rest go
    std::ranges::copy_if(rest, std::back_inserter(pieces),
                         [](const Piece& each) { return each.kind == Kind::aside; });
  }
  cuts_.writeOut(markup_);
  paragraphs_.write(place, pieces);
  if (carriesText) markup_.leaveOutTo(place.to);
  isDivided_ = false;
  open_.back().holdsParagraph = true;
  pieces = std::move(rest);
  text_.carry();
}

/// No paragraph ends here any more: the rest goes on in the next. Tags that reach beyond it stay.
void Writer::vanish(const Place& place) {
  const bool isBalanced = place.inlinesFrom == place.inlinesTo;
  std::size_t from = place.from;
  for (const ParagraphPieces::Item& item : text_.items()) {
    if (item.kind != Kind::aside && (isBalanced || item.kind != Kind::tag)) continue;
    cuts_.add({from, item.bytes.begin});
    from = item.bytes.end;
  }
  if (!text_.items().empty()) cuts_.add({from, place.to});
  text_.carry();
}

// ---- Tables ----

void Writer::tableBegins(const Block& table, std::size_t firstCell) {
  const Span span = map_.tables[tablesMet_++];
  if (droppedTable_ == 0 && dropped_.hold(span)) {
    droppedTable_ = openTables_ + 1;
    droppedTag_ = table.hasParagraph ? Extent() : table.tag;
    droppedCell_ = firstCell;
  }
  ++openTables_;
}

void Writer::rowEnds() {
  text_.passMark();
  const Position row = text_.position() - 1;
  if (droppedTable_ > 0 || touched_.in(row, row + 1)) text_.takeRowMark(droppedCell_);
}

/// Where the element holds a caption, or text between its cells, only the cells go.
void Writer::tableEnds(Extent endTag, bool isWhole) {
  --openTables_;
  if (droppedTable_ != openTables_ + 1) return;
  droppedTable_ = 0;
  open_[open_.size() - 2].lostTable = true;
  if (isWhole && !droppedTag_.empty()) {
    cuts_.add({droppedTag_.begin, endTag.end}, !open_.back().wasDivided);
  } else {
    cuts_.add({droppedCell_, contentFrom_});
  }
  text_.carry();
}

// ---- The end ----

void Writer::end(std::size_t at) {
  if (!map_.endsWithoutBytes) return;
  text_.takeLastMark(at);
  keepInlines();
  // Of an empty paragraph after another one nothing would be seen but that one's end.
  const Position last = story_.length() - 1;
  const bool wouldBeLost = last > 0 && story_.text().at(last - 1) == text::kParagraphMark &&
                           story_.structure().valueAt(last - 1).table == document::kNone;
  if (!wouldBeLost && std::ranges::none_of(text_.pieces(), &Piece::holdsText)) return;
  Place place;
  place.from = place.to = at;
  place.inlinesFrom = place.inlinesTo = walker_.inlines().top();
  place.block = walker_.block();
  cuts_.writeOut(markup_);
  markup_.copyTo(at);
  if (lastTableEnd_ == at)
    for (std::size_t i = 0; i < unclosedTables_; ++i) markup_.put("</table>");
  paragraphs_.write(place, text_.pieces());
}

}  // namespace pluvo::formats::html
