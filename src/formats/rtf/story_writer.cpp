#include "story_writer.h"

namespace pluvo::rtf {

using document::Step;
using text::Position;
using Kind = Character::Kind;

namespace {

/// A field that the document ends in has no bytes for its end.
bool isCutOff(const Character& character) {
  return character.kind == Kind::fieldEnd && character.bytes.empty();
}

}  // namespace

StoryWriter::StoryWriter(std::string_view file, Tables& tables, const OldStory& old,
                         const document::Story& story, NewDocument& out, std::function<void(Extent)> others)
    : map_(old.map),
      story_(story),
      out_(out),
      others_(std::move(others)),
      walker_(old.beginning == nullptr ? Walker(file, *this) : Walker(file, *old.beginning, tables, *this)),
      splicer_(file, out, walker_, story),
      script_(story),
      dropped_(script_),
      rows_(splicer_, map_.rows, dropped_),
      newText_(splicer_, rows_),
      departed_(file, map_.bookmarks, dropped_) {
  for (const auto& [position, number] : map_.comments) {
    if (dropped_.hold({position, position + 1})) droppedComments_.insert(number);
  }
}

// ---- Groups and words ----

void StoryWriter::open(std::size_t begin) {
  rows_.interrupt();
  splicer_.open(begin, position_);
}

void StoryWriter::close(std::size_t end, bool hasBrace) {
  rows_.interrupt();
  const Splicer::Level closed = splicer_.close();
  if (!hasBrace) {
    if (closed.begin < droppedFieldAt_) ++unclosed_;
    return;
  }
  if (newText_.waitsForLiving() && !closed.before.deleted && droppedFields_ == 0)
    newText_.flushAt({end, closed.before, splicer_.depth()});
}

void StoryWriter::missingFallback(std::uint16_t count, Extent at) {
  if (droppedFields_ == 0) splicer_.lacksFallback(count, at);
}

void StoryWriter::word(const Token& token) {
  if (token.word == Word::highlight || token.word == Word::plain)
    splicer_.level().highlight = walker_.state().highlight;
  if (droppedFields_ == 0) rows_.word(token, position_);
}

bool StoryWriter::goes(const SkippedGroup& group) {
  const bool afterDropped = droppedTo_ == position_ && position_ > 0;
  switch (group.word) {
    case Word::label: {
      const Position written = newText_.written();
      const bool beginsParagraph = written == 0 || story_.endsParagraph(written - 1);
      const bool isLeft = afterDropped && (!beginsParagraph || labelAt_ == written);
      if (!isLeft) labelAt_ = written;
      return isLeft;
    }
    case Word::nonesttables:
      return afterDropped;
    case Word::bkmkstart:
    case Word::bkmkend:
      return departed_.contain(splicer_.bytes({group.inside, group.bytes.end}));
    case Word::atrfstart:
    case Word::atrfend:
      return !droppedComments_.empty() &&
             droppedComments_.contains(numberIn(splicer_.bytes({group.inside, group.bytes.end})));
    default:
      return false;
  }
}

void StoryWriter::group(const SkippedGroup& group) {
  // A header or footer is no part of a field that it stands in.
  const bool isStory = isBetween(group.word, Word::header, Word::footerFirst);
  if (droppedFields_ > 0) {
    if (!isStory) return;
    out_.leaveOutTo(group.bytes.begin);
    others_(group.bytes);
    splicer_.copyTo(group.bytes.end);
  } else if (isStory) {
    others_(group.bytes);
  } else if (goes(group)) {
    splicer_.leaveOut(group.bytes);
  }
}

// ---- Characters ----

void StoryWriter::text(Extent bytes) {
  rows_.interrupt();
  flush(bytes.begin);
  const Position from = position_;
  position_ += static_cast<Position>(bytes.end - bytes.begin);
  script_.take(position_, [&](const Step& step) {
    const std::size_t begin = bytes.begin + static_cast<std::size_t>(step.original - from);
    Character part;
    part.bytes = {begin, begin + (step.kind == Step::Kind::put ? 1 : static_cast<std::size_t>(step.length))};
    switch (step.kind) {
      case Step::Kind::keep:
        return keepPart(step, part.bytes);
      case Step::Kind::drop:
        return drop(step, part);
      default:
        return put(step, part);
    }
  });
}

void StoryWriter::keepPart(const Step& step, Extent bytes) {
  for (Position done = 0; done < step.length;) {
    const std::uint8_t colour = splicer_.wanted(step.at + done);
    splicer_.highlightTo(colour, bytes.begin + static_cast<std::size_t>(done));
    done = std::min(step.length, splicer_.wantedTo() - step.at);
  }
  newText_.written(step.at + step.length);
  splicer_.lacksFallback(0, {});
}

void StoryWriter::character(const Character& character) {
  rows_.interrupt();
  if (character.kind == Kind::row && oddRow(character)) return;
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
  followFields(character, from);
}

void StoryWriter::followFields(const Character& character, Position from) {
  if (character.kind == Kind::fieldBegin && (droppedFields_ > 0 || droppedTo_ == from + 1)) {
    if (droppedFields_++ == 0) droppedFieldAt_ = character.bytes.begin;
  }
  if (character.kind != Kind::fieldEnd || droppedFields_ == 0 || --droppedFields_ > 0) return;
  out_.leaveOutTo(character.bytes.end);
  if (character.bytes.empty()) return;
  droppedFieldAt_ = static_cast<std::size_t>(-1);
  if (!newText_.waits()) return;
  const std::size_t level = splicer_.depth() - character.closes;
  newText_.flushAt({character.bytes.end, splicer_.levels()[level + 1].before, level});
}

void StoryWriter::keep(const Step& step, const Character& character) {
  if (step.length < character.units()) {  // half of a pair
    splicer_.leaveOut(character.bytes);
    Step half = step;
    half.kind = Step::Kind::put;
    const char16_t unit = step.original + 1 == position_ ? character.second : character.unit;
    half.units = {&unit, 1};
    return newText_.write(half, newText_.here(character.bytes.end));
  }
  const std::uint8_t colour = splicer_.wanted(step.at);
  // Groups that are left open would keep the colour for themselves.
  if (isCutOff(character) && colour != splicer_.level().highlight) closeFields(character.bytes.begin);
  if (character.kind != Kind::row) splicer_.highlightTo(colour, character.bytes.begin);
  newText_.written(step.at + step.length);
  splicer_.lacksFallback(character.missingFallback, character.fallbackAt);
  if (holdsStories(character.group)) others_(character.bytes);
  if (character.isHalf) {
    splicer_.copyTo(character.bytes.end);
    out_.isHalf();
  }
}

void StoryWriter::drop(const Step& step, const Character& character) {
  droppedTo_ = step.original + step.length;
  if (droppedFields_ > 0 || step.length < character.units()) return;
  splicer_.copyTo(character.bytes.begin);
  // The text after it would stand for the character before it.
  splicer_.fillFallback(character.bytes.begin);
  // The bytes of a field go when its end does.
  if (character.kind == Kind::fieldBegin) return;
  if (!character.kept.empty()) {
    out_.leaveOutTo(character.kept.begin);
    splicer_.copyTo(character.kept.end);
  }
  out_.leaveOutTo(character.bytes.end);
}

void StoryWriter::put(const Step& step, const Character& character) {
  if (droppedFields_ > 0) return newText_.wait(step);
  if (!step.after) return newText_.write(step, newText_.inFrontOf(character.bytes.begin, step));
  const document::Structure structure = story_.structure().valueAt(step.at);
  if (walker_.state().deleted && !structure.deleted) return newText_.waitForLiving(step);
  const bool isMark = character.kind == Kind::paragraph || character.kind == Kind::cell ||
                      character.kind == Kind::row || character.kind == Kind::section;
  const bool opensGroup = character.kind == Kind::fieldBegin || character.kind == Kind::fieldSeparator;
  if (opensGroup || isCutOff(character) || character.fillsGroup || !character.kept.empty())
    return newText_.wait(step);
  Place place = newText_.here(character.bytes.end);
  if (character.closes > 0) {
    place.level -= character.closes;
    place.state = splicer_.levels()[place.level + 1].before;
  }
  // In front of the table of colours none can be named.
  if (!out_.takesColours(place.at) && splicer_.wanted(step.at) != splicer_.level().highlight)
    return newText_.wait(step);
  if (isMark) return newText_.writeAfterMark(step, place);
  newText_.write(step, place);
}

// ---- Rows ----

/// The end of a row that is no character, or two. True for the former.
bool StoryWriter::oddRow(const Character& rowMark) {
  if (nextOddity_ == map_.oddities.size() || map_.oddities[nextOddity_].token != rowMark.bytes.begin)
    return false;
  if (map_.oddities[nextOddity_++].kind == Oddity::Kind::cellEnds) {
    missingCell(rowMark);
    return false;
  }
  // It would get a cell where the paragraph before it runs into it.
  if (droppedFields_ == 0 && droppedTo_ == position_ && position_ > 0) splicer_.leaveOut(rowMark.bytes);
  return true;
}

/// A cell that ends where its row does gets a mark of its own where its text may have gone.
void StoryWriter::missingCell(const Character& rowMark) {
  const Position from = position_;
  const bool isTouched = droppedTo_ == from && from > 0;
  // A nested row ends in a group of its own, in front of which its cells lie.
  const bool isNested = rowMark.depth > 1;
  const Splicer::Level& group = splicer_.level();
  const Place place =
      isNested ? Place{group.begin, group.before, splicer_.depth() - 1} : newText_.here(rowMark.bytes.begin);
  if (newText_.waits() && droppedFields_ == 0) newText_.flushAt(place);
  position_ = from + 1;
  script_.take(position_, [&](const Step& step) {
    if (step.kind == Step::Kind::put) return newText_.write(step, place);
    if (step.kind == Step::Kind::drop) {
      droppedTo_ = position_;
      return;
    }
    const std::uint8_t colour = splicer_.wanted(step.at);
    newText_.written(step.at + 1);
    if (!isTouched && colour == 0) return;
    splicer_.copyTo(place.at);
    std::vector<Splicer::Level> inner = splicer_.setAside(place.level);
    splicer_.highlightTo(colour);
    out_.put(isNested ? "\\nestcell " : "\\cell ");
    splicer_.giveBack(inner);
    splicer_.level().highlight = colour;
  });
}

// ---- The end ----

void StoryWriter::flush(std::size_t at) {
  if (newText_.waits() && droppedFields_ == 0) newText_.flushAt(newText_.here(at));
}

void StoryWriter::end(std::size_t at) {
  if (map_.endsWithoutBytes) return endWithoutBytes(at);
  flush(at);
}

void StoryWriter::endWithoutBytes(std::size_t at) {
  std::vector<Step> texts = newText_.takeWaiting();
  script_.take(position_ + 1, [&](const Step& step) {
    if (step.kind == Step::Kind::put) texts.push_back(step);
  });
  if (!texts.empty()) closeFields(at);
  for (const Step& text : texts) newText_.writeAtEnd(text, at);
  // A paragraph's end in front of the document's would be the last one.
  const Position last = story_.length() - 1;
  const bool wouldBeLast = last > 0 && story_.text().at(last - 1) == text::kParagraphMark &&
                           story_.structure().valueAt(last - 1).table == document::kNone;
  const std::uint8_t colour = splicer_.wanted(last);
  if (!wouldBeLast && colour == splicer_.level().highlight) return;
  closeFields(at);
  splicer_.copyTo(at);
  splicer_.highlightTo(colour);
  if (wouldBeLast) out_.put(walker_.state().tableDepth() > 0 ? "\\pard\\par " : "\\par ");
}

/// Gives fields that end where the document does their braces, for bytes that come after them.
void StoryWriter::closeFields(std::size_t at) {
  if (unclosed_ == 0) return;
  splicer_.copyTo(at);
  out_.put(std::string(unclosed_, '}'));
  unclosed_ = 0;
  splicer_.lacksFallback(0, {});
}

}  // namespace pluvo::rtf
