#include "writer.h"

#include "errors/document_error.h"
#include "story_parts.h"

#include <algorithm>
#include <iterator>

namespace pluvo::formats::html {

using document::Step;
using text::Position;
using text::Span;
using Kind = Piece::Kind;

Writer::Writer(const Page& page, const Part& part, const TextMap& map, const document::Story& story,
               std::vector<Cut> others)
    : page_(page),
      map_(map),
      story_(story),
      script_(story),
      dropped_(script_),
      walker_(page, *this, part),
      markup_(page, part.bytes, walker_),
      paragraphs_(markup_, page, walker_),
      contentFrom_(part.bytes.begin),
      others_(std::move(others)) {
  document::forEachTouchedSpan(script_, story, map.highlight, [&](Span span) { touched_.push_back(span); });
}

std::vector<base::ByteSpan> Writer::write() {
  walker_.walk();
  settleCuts();
  return markup_.finish();
}

// ---- The events of the walk ----

Writer::Item Writer::itemHere(Kind kind, Extent bytes) const {
  return {
      kind, walker_.isPreformatted(), walker_.state().colour, walker_.inlines().top(), bytes, position_, 0,
      0};
}

void Writer::between(Kind kind, Extent bytes) { items_.push_back(itemHere(kind, bytes)); }

void Writer::text(Extent bytes) {
  items_.push_back(itemHere(Kind::text, bytes));
  items_.back().count = static_cast<Position>(bytes.size());
  position_ += items_.back().count;
}

void Writer::character(const Character& character) {
  items_.push_back(itemHere(Kind::character, character.bytes));
  items_.back().count = character.count;
  items_.back().character = characters_.size();
  characters_.push_back(character);
  position_ += character.count;
  hasFields_ = hasFields_ || character.kind >= Character::Kind::fieldBegin;
}

void Writer::aside(Aside kind, Extent bytes) {
  if (holdsStories(kind)) return cutIn(bytes);
  between(Kind::aside, bytes);
}

void Writer::cutIn(Extent holder) {
  for (Cut& cut : others_)
    if (cut.bytes.begin >= holder.begin && cut.bytes.end <= holder.end) cuts_.push_back(std::move(cut));
}

void Writer::beginAt(std::size_t at) {
  contentFrom_ = at;
  inlinesFrom_ = walker_.inlines().top();
  paragraphFrom_ = position_;
  clearItems();
}

void Writer::clearItems() {
  items_.clear();
  hasFields_ = false;
  if (pieces_.empty()) characters_.clear();
  walker_.keepInlines(!pieces_.empty());
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
    cuts_.push_back({block.tag, !closed.wasDivided});
    cuts_.push_back({endTag, false});
  }
  // An end tag that is left out divides nothing once what follows is gone.
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

/// Bytes that go are left out before any after them are written: a block's tag is met before that is known.
void Writer::settleCuts() {
  std::ranges::sort(cuts_, {}, [](const Cut& cut) { return cut.bytes.begin; });
  for (const Cut& cut : cuts_) {
    const bool isInOneBefore = cut.bytes.begin < markup_.copied();
    markup_.copyTo(cut.bytes.begin);
    if (cut.divides) markup_.put("<div></div>");
    if (!isInOneBefore) markup_.put(cut.in);
    markup_.leaveOutTo(cut.bytes.end);
  }
  cuts_.clear();
}

bool Writer::isTouched(Position from, Position to) {
  while (nextTouched_ < touched_.size() && touched_[nextTouched_].to <= from) ++nextTouched_;
  return nextTouched_ < touched_.size() && touched_[nextTouched_].from < to;
}

/// Whether within the length of the longest reference another text stands after it than before.
bool Writer::isNearEdit(Position at) {
  constexpr Position kReach = 40;
  const auto next = std::ranges::lower_bound(touched_, at, {}, &Span::to);
  return next != touched_.end() && next->from <= at + kReach;
}

void Writer::paragraphEnds(const Paragraph& paragraph) {
  const Position from = paragraphFrom_;
  if (paragraph.hasMark) ++position_;
  // The end of a cell after a table that went is a paragraph of its own still.
  const bool endsAfterTable = paragraph.isCell && open_.back().lostTable && open_.back().holdsParagraph;
  if (droppedTable_ == 0 && pieces_.empty() && !isTouched(from, position_) && !endsAfterTable) {
    open_.back().holdsParagraph = true;
    isDivided_ = isDivided_ && !paragraph.hasMark;
    if (hasFields_)
      for (const Item& item : items_) passField(item);
    return clearItems();
  }
  // Untouched text was passed by, and the end of the bytes stays after the text.
  script_.take(from, [](const Step&) {});
  std::erase_if(items_,
                [&](const Item& item) { return item.bytes.begin >= paragraph.at && item.count == 0; });
  takeItems();
  takeMark(position_ - (paragraph.hasMark ? 1 : 0), paragraph.at, paragraph.hasMark,
           walker_.markState().colour);
  if (droppedTable_ > 0) return clearItems();
  const Block& block = walker_.block();
  const unsigned traits = traitsOf(block.name);
  Place place;
  place.from = contentFrom_;
  place.to = paragraph.at;
  place.inlinesFrom = inlinesFrom_;
  place.inlinesTo = walker_.inlines().top();
  place.block = block;
  const bool endsCell = isCell(block.name) && paragraph.endsBlock && paragraph.isFirst;
  const bool isEmptyCell = paragraph.isCell && !endsAfterTable;
  place.existsEmpty = (paragraph.isOwned && paragraph.endsBlock) || isEmptyCell || endsCell;
  place.onlyAlone = paragraph.isCell || endsCell;
  const bool isAlone = (traits & kDivision) != 0 && paragraph.isFirst && paragraph.endsBlock;
  place.dividesBlock = (paragraph.isOwned && (traits & kPreformatted) == 0) || isAlone;
  writePieces(place);
  clearItems();
}

/// The paragraphs that end here are written; what follows the last end goes on in the next paragraph.
void Writer::writePieces(const Place& place) {
  const auto ends = [](const Piece& piece) {
    if (piece.kind == Kind::mark) return true;
    if (piece.kind == Kind::put) return piece.units.find(text::kParagraphMark) != piece.units.npos;
    return piece.kind == Kind::character && (piece.character.kind == Character::Kind::paragraph ||
                                             piece.character.kind == Character::Kind::section);
  };
  const auto last = std::find_if(pieces_.rbegin(), pieces_.rend(), ends);
  if (last == pieces_.rend()) return vanish(place);
  // A piece of new text may have an end within.
  auto count = static_cast<std::size_t>(pieces_.rend() - last);
  Piece& piece = pieces_[count - 1];
  if (piece.kind == Kind::put) {
    const std::size_t own = piece.units.rfind(text::kParagraphMark) + 1;
    if (own < piece.units.size()) {
      Piece rest = piece;
      rest.units = piece.units.substr(own);
      piece.units = piece.units.substr(0, own);
      pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(count), rest);
    }
  }
  const bool carriesText = std::any_of(pieces_.begin() + static_cast<std::ptrdiff_t>(count), pieces_.end(),
                                       [](const Piece& rest) { return rest.holdsText(); });
  if (!carriesText) count = pieces_.size();
  std::vector<Piece> rest(pieces_.begin() + static_cast<std::ptrdiff_t>(count), pieces_.end());
  if (carriesText) {
    pieces_.resize(count);
    pieces_.emplace_back();  // the bytes of the rest go
    std::ranges::copy_if(rest, std::back_inserter(pieces_),
                         [](const Piece& each) { return each.kind == Kind::aside; });
  }
  settleCuts();
  paragraphs_.write(place, pieces_);
  if (carriesText) markup_.leaveOutTo(place.to);
  isDivided_ = false;
  open_.back().holdsParagraph = true;
  pieces_ = std::move(rest);
  carry();
}

/// No paragraph ends here any more: the rest goes on in the next. Tags that reach beyond it stay.
void Writer::vanish(const Place& place) {
  const bool isBalanced = place.inlinesFrom == place.inlinesTo;
  std::size_t from = place.from;
  for (const Item& item : items_) {
    if (item.kind != Kind::aside && (isBalanced || item.kind != Kind::tag)) continue;
    cuts_.push_back({{from, item.bytes.begin}, false});
    from = item.bytes.end;
  }
  if (!items_.empty()) cuts_.push_back({{from, place.to}, false});
  carry();
}

/// Keeps the pieces that go on in the next paragraph.
void Writer::carry() {
  std::erase_if(pieces_, [](const Piece& piece) { return !piece.holdsText(); });
  for (Piece& piece : pieces_) piece.isOld = false;
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
  ++position_;
  if (droppedTable_ == 0 && !isTouched(position_ - 1, position_)) return;
  script_.take(position_ - 1, [](const Step&) {});
  Item item = itemHere(Kind::gap, {droppedCell_, droppedCell_});
  item.from = position_ - 1;
  script_.take(position_, [&](const Step& step) {
    if (step.kind == Step::Kind::put) put(step, item);
  });
}

/// Where the element holds a caption, or text between its cells, only the cells go.
void Writer::tableEnds(Extent endTag, bool isWhole) {
  --openTables_;
  if (droppedTable_ != openTables_ + 1) return;
  droppedTable_ = 0;
  open_[open_.size() - 2].lostTable = true;
  if (isWhole && !droppedTag_.empty()) {
    cuts_.push_back({{droppedTag_.begin, endTag.end}, !open_.back().wasDivided});
  } else {
    cuts_.push_back({{droppedCell_, contentFrom_}, false});
  }
  carry();
}

// ---- The end ----

void Writer::end(std::size_t at) {
  if (!map_.endsWithoutBytes) return;
  script_.take(position_, [](const Step&) {});
  clearItems();
  takeMark(position_, at, true, 0);
  ++position_;
  // Of an empty paragraph after another one nothing would be seen but that one's end.
  const Position last = story_.length() - 1;
  const bool wouldBeLost = last > 0 && story_.text().at(last - 1) == text::kParagraphMark &&
                           story_.structure().valueAt(last - 1).table == document::kNone;
  if (!wouldBeLost && std::ranges::none_of(pieces_, &Piece::holdsText)) return;
  Place place;
  place.from = place.to = at;
  place.inlinesFrom = place.inlinesTo = walker_.inlines().top();
  place.block = walker_.block();
  settleCuts();
  markup_.copyTo(at);
  if (lastTableEnd_ == at)
    for (std::size_t i = 0; i < unclosedTables_; ++i) markup_.put("</table>");
  paragraphs_.write(place, pieces_);
}

}  // namespace pluvo::formats::html
