#include "writer.h"

#include "document/kept.h"
#include "errors/document_error.h"

#include <algorithm>

namespace pluvo::rtf {

using document::Step;
using text::Position;
using text::Span;
using Kind = Character::Kind;

namespace {

/// Words that define rows and cells.
bool definesRows(std::string_view word) {
  constexpr std::array<std::string_view, 11> kBeginnings = {
      "tr", "cl", "ts", "irow", "lastrow", "ltrrow", "brdr", "rtlrow", "tbl", "td", "tp"};
  return word.starts_with("cellx") || std::ranges::any_of(kBeginnings, [&](std::string_view beginning) {
           return word.starts_with(beginning);
         });
}

}  // namespace

Writer::Writer(std::string_view file, const Tables& tables, const TextMap& map, const document::Story& story)
    : file_(file),
      tables_(tables),
      map_(map),
      story_(story),
      script_(story),
      walker_(file, *this),
      head_(file.substr(0, tables.coloursAt)),
      rest_(file, tables.coloursAt) {
  const document::Dropped dropped(script_);
  for (const Span& row : map.rows) {
    if (!dropped.hold(row)) continue;
    while (!droppedRows_.empty() && droppedRows_.back().from >= row.from) droppedRows_.pop_back();
    droppedRows_.push_back(row);
  }
  for (const auto& [position, number] : map.comments) {
    if (dropped.hold({position, position + 1})) droppedComments_.insert(number);
  }
  for (std::size_t i = 1; i < colourPlaces_.size(); ++i)
    colourPlaces_[i] = tables.colours.placeOf(static_cast<std::uint8_t>(i));
  levels_.push_back({});
}

void Writer::write(base::Output& out) {
  walker_.walk();
  for (const base::ByteSpan piece : head_.finish()) out.write(piece);
  const std::string colours = newColours();
  out.write({reinterpret_cast<const std::uint8_t*>(colours.data()), colours.size()});
  const std::vector<base::ByteSpan> rest = rest_.finish();
  if (colours.empty() && isHeadOpenEnded_ && rest_.continuesWord()) {
    constexpr std::uint8_t kBlank = ' ';
    out.write({&kBlank, 1});
  }
  for (const base::ByteSpan piece : rest) out.write(piece);
}

void Writer::copyTo(std::size_t at) {
  if (out_ == &head_ && at >= tables_.coloursAt) {
    head_.copyTo(tables_.coloursAt, false);
    out_ = &rest_;
    isHeadOpenEnded_ = walker_.isOpenEnd(tables_.coloursAt);
  }
  out_->copyTo(at, walker_.isOpenEnd(at));
}

// ---- Colours ----

std::int32_t Writer::placeOfColour(std::uint8_t colour) {
  if (colour == 0) return 0;
  if (out_ == &head_) {
    throw errors::DocumentError(errors::Problem::unsupported,
                                "The document names its colours after text that is to be highlighted; "
                                "save it in a word processor first.");
  }
  std::int32_t& place = colourPlaces_[colour];
  if (place > 0) return place;
  const std::int32_t old = tables_.colours.count() + (tables_.colours.endsOpen() ? 1 : 0);
  place = std::max(old, 1) + static_cast<std::int32_t>(newColours_.size());
  newColours_.push_back(colour);
  return place;
}

std::string Writer::newColours() const {
  if (newColours_.empty()) return {};
  std::string entries;
  for (const std::uint8_t colour : newColours_) entries += Colours::entryOf(colour);
  if (!tables_.hasColours) return "{\\colortbl;" + entries + "}";
  const bool lacksEnd = tables_.colours.endsOpen() || tables_.colours.count() == 0;
  return (lacksEnd ? ";" : "") + entries;
}

std::uint8_t Writer::wanted(Position at) {
  if (at < highlight_.from || at >= highlight_.to) highlight_ = story_.highlight().runAt(at);
  return highlight_.value;
}

/// Writes the colour that is to hold from here on.
void Writer::highlightTo(std::uint8_t colour) {
  std::uint8_t& now = levels_.back().highlight;
  if (now == colour) return;
  out_->put("\\highlight" + std::to_string(placeOfColour(colour)) + " ");
  now = colour;
}

// ---- What the walk meets ----

void Writer::open(std::size_t begin) {
  inRowWords_ = false;
  levels_.push_back({begin, position_, walker_.state(), levels_.back().highlight});
}

void Writer::close(std::size_t end, bool hasBrace) {
  inRowWords_ = false;
  const Level closed = levels_.back();
  levels_.pop_back();
  if (!hasBrace) {
    if (closed.begin < droppedFieldAt_) ++unclosed_;
    return;
  }
  if (waitsForLiving_ && !closed.before.deleted && droppedFields_ == 0)
    flushAt({end, closed.before, levels_.size() - 1});
}

bool Writer::isRowDropped() {
  while (nextDroppedRow_ < droppedRows_.size() && droppedRows_[nextDroppedRow_].to <= position_)
    ++nextDroppedRow_;
  return nextDroppedRow_ < droppedRows_.size() && droppedRows_[nextDroppedRow_].from <= position_;
}

void Writer::missingFallback(std::uint16_t count, Extent at) {
  if (droppedFields_ > 0) return;
  missingFallback_ = count;
  missingAt_ = at;
}

/// Puts there what should stand after a numbered character, and would be taken from the text that comes.
void Writer::fillFallback(std::size_t at) {
  if (missingFallback_ > 0 && missingAt_.begin <= at && at <= missingAt_.end)
    out_->put(std::string(missingFallback_, '?'));
  missingFallback_ = 0;
}

void Writer::word(const Token& token) {
  if (token.word == Word::highlight || token.word == Word::plain)
    levels_.back().highlight = walker_.state().highlight;
  if (droppedFields_ > 0) return;
  if (token.word == Word::trowd) {
    if (rowPosition_ != position_) {
      rowBegin_ = token.extent.begin;
      rowPosition_ = position_;
      rowHighlight_ = levels_.back().highlight;
    }
    inRowWords_ = true;
  }
  if (!inRowWords_ && token.word != Word::itap) return;
  const std::string_view word =
      file_.substr(token.extent.begin + 1, token.extent.end - token.extent.begin - 1);
  inRowWords_ = inRowWords_ && definesRows(word);
  if ((!inRowWords_ && token.word != Word::itap) || !isRowDropped()) return;
  copyTo(token.extent.begin);
  out_->leaveOutTo(token.extent.end);
}

void Writer::group(const SkippedGroup& group) {
  if (droppedFields_ > 0) return;
  const bool afterDropped = droppedTo_ == position_ && position_ > 0;
  bool goes = false;
  switch (group.word) {
    case Word::label: {
      const bool beginsParagraph = written_ == 0 || story_.endsParagraph(written_ - 1);
      goes = afterDropped && (!beginsParagraph || labelAt_ == written_);
      if (!goes) labelAt_ = written_;
      break;
    }
    case Word::nonesttables:
      goes = afterDropped;
      break;
    case Word::atrfstart:
    case Word::atrfend:
      goes = !droppedComments_.empty() &&
             droppedComments_.contains(numberIn(file_.substr(group.inside, group.bytes.end - group.inside)));
      break;
    default:
      break;
  }
  if (!goes) return;
  copyTo(group.bytes.begin);
  out_->leaveOutTo(group.bytes.end);
}

void Writer::text(Extent bytes) {
  inRowWords_ = false;
  flush(bytes.begin);
  const auto count = static_cast<Position>(bytes.end - bytes.begin);
  runBegin_ = bytes.begin;
  runPosition_ = position_;
  position_ += count;
  script_.take(position_, [&](const Step& step) {
    Character part;
    const auto byteOf = [&](Position position) {
      return runBegin_ + static_cast<std::size_t>(position - runPosition_);
    };
    if (step.kind == Step::Kind::put) {
      part.bytes = {byteOf(step.original), byteOf(step.original + 1)};
      return put(step, part);
    }
    part.bytes = {byteOf(step.original), byteOf(step.original + step.length)};
    if (step.kind == Step::Kind::drop) return drop(step, part);
    for (Position done = 0; done < step.length;) {
      const std::uint8_t colour = wanted(step.at + done);
      if (colour != levels_.back().highlight) {
        copyTo(byteOf(step.original + done));
        highlightTo(colour);
      }
      done = std::min(step.length, highlight_.to - step.at);
    }
    written_ = step.at + step.length;
    missingFallback_ = 0;
  });
}

void Writer::character(const Character& character) {
  inRowWords_ = false;
  const bool isRow = character.kind == Kind::row;
  if (isRow && nextOddity_ < map_.oddities.size() &&
      map_.oddities[nextOddity_].token == character.bytes.begin) {
    if (map_.oddities[nextOddity_++].kind == Oddity::Kind::noRow) return emptyRow(character);
    missingCell(character);
  }
  flush(character.bytes.begin);
  const Position from = position_;
  position_ += character.units();
  script_.take(position_, [&](const Step& step) {
    switch (step.kind) {
      case Step::Kind::keep:
        return keep(step, character);
      case Step::Kind::drop:
        return drop(step, character);
      default:
        return put(step, character);
    }
  });
  if (character.kind == Kind::fieldBegin && (droppedFields_ > 0 || droppedTo_ == from + 1)) {
    if (droppedFields_++ == 0) droppedFieldAt_ = character.bytes.begin;
  }
  if (character.kind == Kind::fieldEnd && droppedFields_ > 0 && --droppedFields_ == 0) {
    out_->leaveOutTo(character.bytes.end);
    if (character.bytes.empty()) return;
    droppedFieldAt_ = static_cast<std::size_t>(-1);
    if (!waiting_.empty()) {
      const std::size_t level = levels_.size() - 1 - character.closes;
      flushAt({character.bytes.end, levels_[level + 1].before, level});
    }
  }
}

void Writer::keep(const Step& step, const Character& character) {
  if (step.length < character.units()) {  // half of a pair
    copyTo(character.bytes.begin);
    out_->leaveOutTo(character.bytes.end);
    Step half = step;
    half.kind = Step::Kind::put;
    const char16_t unit = step.original + 1 == position_ ? character.second : character.unit;
    half.units = {&unit, 1};
    return write(half, here(character.bytes.end));
  }
  if (character.kind != Kind::row) {
    const std::uint8_t colour = wanted(step.at);
    if (colour != levels_.back().highlight) {
      copyTo(character.bytes.begin);
      highlightTo(colour);
    }
  }
  written_ = step.at + step.length;
  missingFallback_ = character.missingFallback;
  missingAt_ = character.fallbackAt;
  if (character.isHalf) {
    copyTo(character.bytes.end);
    out_->isHalf();
  }
}

void Writer::drop(const Step& step, const Character& character) {
  droppedTo_ = step.original + step.length;
  if (droppedFields_ > 0) return;
  if (step.length < character.units()) return;
  copyTo(character.bytes.begin);
  // The text after it would stand for the character before it.
  fillFallback(character.bytes.begin);
  // The bytes of a field go when its end does.
  if (character.kind == Kind::fieldBegin) return;
  if (!character.kept.empty()) {
    out_->leaveOutTo(character.kept.begin);
    copyTo(character.kept.end);
  }
  out_->leaveOutTo(character.bytes.end);
}

void Writer::put(const Step& step, const Character& character) {
  if (droppedFields_ > 0) {
    waiting_.push_back(step);
    return;
  }
  const document::Structure structure = story_.structure().valueAt(step.at);
  const bool leavesDeleted = walker_.state().deleted && !structure.deleted;
  if (!step.behind) return write(step, inFront(character, step));
  const bool isMark = character.kind == Kind::paragraph || character.kind == Kind::cell ||
                      character.kind == Kind::row || character.kind == Kind::section;
  const bool opensGroup = character.kind == Kind::fieldBegin || character.kind == Kind::fieldSeparator;
  const bool endsInDocumentsEnd = character.kind == Kind::fieldEnd && character.bytes.empty();
  if (opensGroup || endsInDocumentsEnd || character.fillsGroup || !character.kept.empty() || leavesDeleted) {
    waitsForLiving_ = leavesDeleted;
    waiting_.push_back(step);
    return;
  }
  Place place = here(character.bytes.end);
  if (character.closes > 0) {
    place.level -= character.closes;
    place.state = levels_[place.level + 1].before;
  }
  if (!isMark) return write(step, place);
  // Own paragraphs go directly behind the mark, the rest into the next one.
  const std::size_t own = step.units.rfind(text::kParagraphMark) + 1;
  Step part = step;
  part.units = step.units.substr(0, own);
  part.length = static_cast<Position>(own);
  if (own > 0) {
    flushAt(place);  // the text before it is of its first paragraph
    write(part, place);
  }
  if (own == step.units.size()) return;
  part.units = step.units.substr(own);
  part.at = step.at + part.length;
  part.length = step.length - part.length;
  waiting_.push_back(part);
}

/// The end of a row that had no cells would get one where the paragraph before it runs into it.
void Writer::emptyRow(const Character& rowMark) {
  if (droppedFields_ > 0 || droppedTo_ != position_ || position_ == 0) return;
  copyTo(rowMark.bytes.begin);
  out_->leaveOutTo(rowMark.bytes.end);
}

/// A cell that ends where its row does gets a mark of its own where its text may have gone.
void Writer::missingCell(const Character& rowMark) {
  const Position from = position_;
  const bool isTouched = droppedTo_ == from && from > 0;
  // A nested row ends in a group of its own, in front of which its cells lie.
  const bool isNested = rowMark.depth > 1;
  const Level& group = levels_.back();
  const Place place =
      isNested ? Place{group.begin, group.before, levels_.size() - 2} : here(rowMark.bytes.begin);
  if (!waiting_.empty() && droppedFields_ == 0) flushAt(place);
  position_ = from + 1;
  script_.take(position_, [&](const Step& step) {
    if (step.kind == Step::Kind::put) return write(step, place);
    if (step.kind == Step::Kind::drop) {
      droppedTo_ = position_;
      return;
    }
    const std::uint8_t colour = wanted(step.at);
    written_ = step.at + 1;
    if (!isTouched && colour == 0) return;
    copyTo(place.at);
    const Level inner = levels_.back();
    levels_.resize(place.level + 1);
    highlightTo(colour);
    out_->put(isNested ? "\\nestcell " : "\\cell ");
    if (isNested) {
      levels_.push_back(inner);
      levels_.back().highlight = colour;
    }
  });
}

void Writer::end(std::size_t at) {
  if (map_.endsWithoutBytes) {
    const bool isInTable = walker_.state().tableDepth() > 0;
    const Position last = story_.length() - 1;
    std::vector<Step> texts = std::move(waiting_);
    waiting_.clear();
    script_.take(position_ + 1, [&](const Step& step) {
      if (step.kind == Step::Kind::put) texts.push_back(step);
    });
    if (!texts.empty()) closeFields(at);
    for (const Step& text : texts) {
      const std::size_t own = text.units.rfind(text::kParagraphMark) + 1;
      Step part = text;
      part.units = text.units.substr(0, own);
      if (own > 0) write(part, here(at));
      part.units = text.units.substr(own);
      part.at = text.at + static_cast<Position>(own);
      if (part.units.empty()) continue;
      copyTo(at);
      if (isInTable) out_->put("\\pard ");
      State state = walker_.state();
      state.inTable = false;
      state.depth = 0;
      write(part, {at, state, levels_.size() - 1});
    }
    // A paragraph's end in front of the document's would be the last one.
    const bool wouldBeLast = last > 0 && story_.text().at(last - 1) == text::kParagraphMark &&
                             story_.structure().valueAt(last - 1).table == document::kNone;
    const std::uint8_t colour = wanted(last);
    if (wouldBeLast || colour != levels_.back().highlight) {
      closeFields(at);
      copyTo(at);
      highlightTo(colour);
    }
    if (wouldBeLast) out_->put(isInTable ? "\\pard\\par " : "\\par ");
  } else {
    flush(at);
  }
}

/// Gives fields that end where the document does their braces, for what comes after them.
void Writer::closeFields(std::size_t at) {
  if (unclosed_ == 0) return;
  copyTo(at);
  out_->put(std::string(unclosed_, '}'));
  unclosed_ = 0;
  missingFallback_ = 0;
}

// ---- New text ----

Writer::Place Writer::here(std::size_t at) const { return {at, walker_.state(), levels_.size() - 1}; }

/// In front of a character; of a living text in front of a group that is deleted, of paragraphs that do not
/// lie in the table in front of its row.
Writer::Place Writer::inFront(const Character& character, const Step& text) const {
  const document::Structure structure = story_.structure().valueAt(text.at);
  Place place = here(character.bytes.begin);
  if (place.state.deleted && !structure.deleted) {
    std::size_t level = levels_.size() - 1;
    while (level > 0 && levels_[level].before.deleted) --level;
    const bool isFirst = level > 0 && levels_[level].position == text.original;
    const bool isReached = out_->copied() > levels_[level].begin || out_->endsInNew();
    if (isFirst && !isReached) return {levels_[level].begin, levels_[level].before, level - 1};
  }
  return place;
}

void Writer::flush(std::size_t at) {
  if (!waiting_.empty() && droppedFields_ == 0) flushAt(here(at));
}

void Writer::flushAt(const Place& place) {
  const std::vector<Step> texts = std::move(waiting_);
  waiting_.clear();
  waitsForLiving_ = false;
  for (const Step& text : texts) write(text, place);
}

std::uint16_t Writer::depthOf(Position at) const {
  std::uint16_t depth = 0;
  for (std::int32_t table = story_.structure().valueAt(at).table; table != document::kNone;
       table = story_.tables()[static_cast<std::size_t>(table)].parent)
    ++depth;
  return depth;
}

/// Whether a character that no view shows is so by its own look, and not by the field it lies in.
bool Writer::hidesItself(Position at) const {
  const std::int32_t field = story_.structure().valueAt(at).field;
  return field == document::kNone ||
         story_.fields()[static_cast<std::size_t>(field)].around == text::kEverywhere;
}

void Writer::write(const Step& text, const Place& place) {
  const std::uint16_t depth = depthOf(text.at);
  const std::size_t own = text.units.rfind(text::kParagraphMark) + 1;
  const bool isElsewhere = own > 0 && depth != place.state.tableDepth();
  const bool isBeforeRow = isElsewhere && rowPosition_ == text.original && !text.behind &&
                           out_->copied() <= rowBegin_ && depth < place.state.tableDepth();
  if (isBeforeRow) {
    copyTo(rowBegin_);
  } else {
    copyTo(place.at);
  }
  fillFallback(place.at);

  std::vector<Level> inner;
  while (levels_.size() > place.level + 1) {
    inner.push_back(levels_.back());
    levels_.pop_back();
  }
  if (isElsewhere) {
    levels_.push_back(levels_.back());
    if (isBeforeRow) levels_.back().highlight = rowHighlight_;
    out_->put("{\\pard");
    if (depth > 0) out_->put("\\intbl");
    if (depth > 1) out_->put("\\itap" + std::to_string(depth));
    out_->put(" ");
    writeRuns(text, 0, own, place.state);
    out_->put("}");
    levels_.pop_back();
    if (isBeforeRow) copyTo(place.at);
  }
  const std::uint8_t colour = levels_.back().highlight;
  writeRuns(text, isElsewhere ? own : 0, text.units.size(), place.state);
  // Groups that begin behind the text have inherited the colour before it.
  if (!inner.empty() && inner.back().begin >= place.at) highlightTo(colour);
  while (!inner.empty()) {
    levels_.push_back(inner.back());
    inner.pop_back();
  }
  written_ = text.at + text.length;
}

/// Text with its colours, in a group where it would look otherwise than it should.
void Writer::writeRuns(const Step& text, std::size_t from, std::size_t to, const State& state) {
  if (from >= to) return;
  const Position first = text.at + static_cast<Position>(from);
  const bool isHidden = story_.visibility().valueAt(first) == text::kNowhere;
  const bool isDeleted = story_.structure().valueAt(first).deleted;
  std::string look;
  if (isHidden != state.hidden && (state.hidden || hidesItself(first))) look += isHidden ? "\\v" : "\\v0";
  if (isDeleted != state.deleted) look += isDeleted ? "\\deleted" : "\\deleted0";
  const bool isSymbol =
      !state.inCode && walker_.tables().fonts.decoder(state.decoder).kind == Decoder::Kind::symbol;
  if (isSymbol) {
    if (const auto font = walker_.tables().fonts.forLetters()) look += "\\f" + std::to_string(*font);
  }
  if (!look.empty()) {
    out_->put("{" + look + " ");
    levels_.push_back(levels_.back());
  }
  std::string bytes;
  for (std::size_t at = from; at < to;) {
    const std::uint8_t colour = wanted(text.at + static_cast<Position>(at));
    const auto runEnd = static_cast<std::size_t>(highlight_.to - text.at);
    const std::size_t end = std::min(to, runEnd);
    highlightTo(colour);
    bytes.clear();
    appendEncoded(bytes, text.units.substr(at, end - at), state.fallback);
    out_->put(bytes);
    at = end;
  }
  if (!look.empty()) {
    out_->put("}");
    levels_.pop_back();
  }
}

}  // namespace pluvo::rtf
