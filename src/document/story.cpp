#include "document/story.h"

#include "base/same_bytes.h"
#include "base/text.h"
#include "base/utf.h"
#include "document/edit_policy.h"
#include "errors/fault.h"
#include "word/faults.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::document {

using text::Position;
using text::Span;
using text::View;

namespace {

constexpr std::array kReserved = {text::kPicture,        text::kNoteReference,   text::kCommentReference,
                                  text::kCellMark,       text::kFloatingPicture, text::kFieldBegin,
                                  text::kFieldSeparator, text::kFieldEnd};

void requireNoMarks(std::u16string_view text) {
  if (std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= u' '; })) return;
  if (text.find_first_of(std::u16string_view(kReserved.data(), kReserved.size())) == text.npos) return;
  throw errors::Fault(
      word::kParameterOutOfRange,
      u"The text holds a control character that stands for a table cell, a field, a picture or a "
      u"note; remove it from the text.")
      .with(errors::Problem::encoding);
}

/// Without a copy where there is nothing to convert.
std::u16string_view withParagraphMarks(std::u16string_view text, std::u16string& converted) {
  if (text.find(u'\n') == text.npos) return text;
  converted = base::withParagraphMarks(text);
  return converted;
}

void requireRoom(Position length, std::u16string_view text) {
  if (text.size() <= static_cast<std::size_t>(text::kMaxLength - length)) return;
  throw errors::Fault(word::kStringTooLong, u"The text would make the document too long.");
}

struct Difference {
  Span gone;
  Position come = 0;
};

/// Where two edits of one original differ, in document order. Each is to be replaced when those in front of
/// it have been.
std::vector<Difference> differences(const text::PieceText& from, const text::PieceText& to) {
  std::vector<Difference> found;
  const auto pastNew = [](const text::PieceText& in, Position at) {
    while (at < in.length() && in.pieceAt(at).isNew()) at += in.pieceAt(at).length;
    return at;
  };
  Position sameFrom = 0;
  Position sameTo = 0;
  const auto takeUpTo = [&](Position atFrom, Position atTo) {
    if (atFrom > sameFrom || atTo > sameTo)
      found.push_back({{sameTo, sameTo + (atFrom - sameFrom)}, atTo - sameTo});
  };
  Position atFrom = pastNew(from, 0);
  Position atTo = pastNew(to, 0);
  while (atFrom < from.length() && atTo < to.length()) {
    const text::Piece left = from.pieceAt(atFrom);
    const text::Piece right = to.pieceAt(atTo);
    if (left.original == right.original) {
      takeUpTo(atFrom, atTo);
      const Position length = std::min(left.length, right.length);
      atFrom = sameFrom = atFrom + length;
      atTo = sameTo = atTo + length;
    } else if (left.original < right.original) {
      atFrom += std::min(left.length, right.original - left.original);
    } else {
      atTo += std::min(right.length, left.original - right.original);
    }
    atFrom = pastNew(from, atFrom);
    atTo = pastNew(to, atTo);
  }
  takeUpTo(from.length(), to.length());
  return found;
}

}  // namespace

Story::Story(Content content, const Medium* medium, PartCount* count)
    : kind_(content.kind),
      medium_(medium),
      text_(std::move(content.text)),
      visibility_(std::move(content.visibility)),
      highlight_(std::move(content.highlight)),
      structure_(std::move(content.structure)),
      nesting_(std::make_shared<const Nesting>(std::move(content.nesting))),
      anchors_(std::move(content.anchors)),
      count_(count == nullptr ? &ownCount_ : count),
      counted_(parts()) {}

Story::Story(Snapshot snapshot)
    : kind_(snapshot.kind),
      medium_(nullptr),
      text_(std::move(snapshot.text)),
      visibility_(std::move(snapshot.visibility)),
      highlight_(std::move(snapshot.highlight)),
      structure_(std::move(snapshot.structure)),
      nesting_(std::move(snapshot.nesting)),
      count_(&ownCount_),
      counted_(parts()),
      changed_(snapshot.changed),
      wasEdited_(snapshot.changed || snapshot.saves > 0),
      saves_(snapshot.saves) {}

void Story::requireText(std::u16string_view newText) {
  if (medium_ != nullptr && !newText.empty()) {
    if (const auto reason = medium_->refusesText(newText))
      throw errors::Fault(word::kParameterOutOfRange, base::utf16(*reason)).with(errors::Problem::encoding);
  }
  requireNoMarks(newText);
  constexpr std::size_t kShort = 256;
  if (newText.size() <= kShort) taken_ = newText;
}

std::size_t Story::parts() const {
  return text_.pieceCount() + visibility_.runCount() + highlight_.runCount() + structure_.runCount();
}

void Story::requireRoomForParts() const {
  if (count_->broughtIn < static_cast<std::int64_t>(count_->most)) return;
  throw errors::Fault(errors::kOutOfMemory,
                      u"These are more changes than one document can take, about sixteen million; divide the "
                      u"document, or look for a longer text.")
      .with(errors::Problem::tooLarge);
}

/// Judged is the text that is sought in other versions, unless the edit lies in a block.
void Story::requireOnlyHere(Span edited, Span judged) const {
  if (block_ && block_->from <= edited.from && edited.to <= block_->to) judged = *block_;
  const std::u16string text = text_.substring(judged.from, judged.to);
  const bool isOnlyHere = std::none_of(rivals_.begin(), rivals_.end(), [&](const Story* rival) {
    return rival->text_.substring(0, rival->length()).find(text) != text.npos;
  });
  if (isOnlyHere) return;
  throw errors::Fault(
      word::kCommandFailed,
      u"The document holds this text box in two versions, for newer and for older word processors. They "
      u"differ, and both hold the text that was to be changed, so that nothing was. Open the document in "
      u"Word and save it there, which makes them alike.")
      .with(errors::Problem::unsupported);
}

/// The word that text put there stands in or beside.
Span Story::wordBeside(Position position, bool after) const {
  const auto isInWord = [&](Position at) { return at >= 0 && at < length() && text_.at(at) > u' '; };
  const Position beside = after ? position - 1 : position;
  Span word{std::max(beside, 0), std::min(beside + 1, length())};
  while (isInWord(word.from) && isInWord(word.from - 1)) --word.from;
  while (isInWord(word.to - 1) && isInWord(word.to)) ++word.to;
  return word;
}

bool Story::hasText(const Story& other) const {
  return length() == other.length() && text_.substring(0, length()) == other.text_.substring(0, length());
}

void Story::countParts() {
  const std::size_t now = parts();
  count_->broughtIn += static_cast<std::int64_t>(now) - static_cast<std::int64_t>(counted_);
  counted_ = now;
}

std::u16string Story::visibleText(Span span, View view) const {
  return text::visibleText(text_, visibility_, view, span.from, span.to);
}

bool Story::endsParagraph(Position position) const {
  switch (text_.at(position)) {
    case text::kParagraphMark:
      return true;
    case text::kCellMark:
      return structure_.valueAt(position).table != kNone;
    case text::kPageBreak:
      return structure_.valueAt(position).sectionMark;
    default:
      return false;
  }
}

bool Story::isCellMark(Position position) const {
  if (text_.at(position) != text::kCellMark) return false;
  const Structure structure = structure_.valueAt(position);
  return structure.table != kNone && !structure.rowMark;
}

bool Story::isFieldMark(Position position) const {
  const char16_t unit = text_.at(position);
  return unit >= text::kFieldBegin && unit <= text::kFieldEnd && structure_.valueAt(position).field != kNone;
}

bool Story::isDeleted(Span span) const {
  for (const auto& run : structure_.runs(span.from, span.to)) {
    if (!run.value.deleted) return false;
  }
  return !span.empty();
}

Landing Story::landingOf(const Removal& removal, std::u16string_view newText) const {
  const bool instead = !removal.spans.empty() && removal.spans.front().from == removal.at;
  return instead ? landingInsteadOf(*this, removal, newText)
                 : landingAt(*this, removal.at, besideText(removal.at), newText);
}

Span Story::replace(Span span, std::u16string_view text, View view) {
  std::u16string converted;
  std::u16string_view newText = text;
  if (!base::sameUnits(text, taken_)) {  // a pass puts in the same text again and again
    newText = withParagraphMarks(text, converted);
    requireText(newText);
  }
  requireRoom(length(), newText);
  requireRoomForParts();
  if (!rivals_.empty()) requireOnlyHere(span, span);
  const Position finalMark = length() - 1;
  if (span.from < std::min(span.to, finalMark) && isPlain())
    return replacePlain({span.from, std::min(span.to, finalMark)}, newText);
  Removal removal = removalOf(*this, span, newText, view);
  if (controls().empty() || newText.empty()) return exchange(removal, newText);

  const Landing landing = landingOf(removal, newText);
  const std::u16string fit = fitted(*this, landing, removal, std::u16string(newText));
  const auto keptMark = static_cast<Position>(newText.size() - fit.size());
  if (keptMark == 0 && fit.back() != newText.back()) removal = removalOf(*this, span, fit, view);
  Span placed = exchange(removal, fit);
  placed.to += keptMark;
  return placed;
}

/// Of a document of nothing but text all of a span goes, and has no surroundings but its highlight.
Span Story::replacePlain(Span span, std::u16string_view newText) {
  const auto newLength = static_cast<Position>(newText.size());
  if (span.length() == newLength && text_.substring(span.from, span.to) == newText) return span;
  Landing landing;
  landing.at = span.from;
  landing.anchor = text_.anchorAt(span.from, false);
  const std::uint8_t* const highlight = highlight_.onlyValue();
  landing.highlight = highlight != nullptr ? *highlight : highlight_.valueAt(span.from);
  put(span, newText, landing);
  ++stamp_;
  return {span.from, span.from + newLength};
}

/// Lets go what a removal takes, and puts text in its place.
Span Story::exchange(const Removal& removal, std::u16string_view newText) {
  Span first{removal.at, removal.at};
  std::size_t next = 0;
  if (!removal.spans.empty() && removal.spans.front().from == removal.at) first = removal.spans[next++];
  const bool leavesRest = next == removal.spans.size();
  const bool sameText = static_cast<std::size_t>(first.length()) == newText.size() &&
                        text_.substring(first.from, first.to) == newText;
  if (leavesRest && sameText) return first;
  const Landing landing = landingOf(removal, newText);
  const Landing* const landed = newText.empty() ? nullptr : &landing;
  requirePossible(*this, removal, landed);
  requireUnlocked(*this, removal, landed, newText);

  Span placed{removal.at, removal.at};
  Position shift = 0;
  if (!sameText) {
    placed = put({landing.at, landing.at + first.length()}, newText, landing);
    shift = placed.length() - first.length();
  } else {
    placed = first;
  }
  for (; next < removal.spans.size(); ++next) {
    const Span gone{removal.spans[next].from + shift, removal.spans[next].to + shift};
    put(gone, {}, {});
    shift -= gone.length();
  }
  ++stamp_;
  return placed;
}

Span Story::insertBefore(Position position, std::u16string_view text) {
  return insert(position, false, text);
}

Span Story::insertBehind(Position position, std::u16string_view text) { return insert(position, true, text); }

Span Story::insert(Position position, bool after, std::u16string_view text) {
  std::u16string newText = base::withParagraphMarks(text);
  requireText(newText);
  requireRoom(length(), newText);
  requireRoomForParts();
  if (newText.empty()) return {position, position};
  if (!rivals_.empty()) requireOnlyHere({position, position}, wordBeside(position, after));
  Landing landing = landingAt(*this, position, after, newText);
  if (!controls().empty()) {
    Removal none{position, {}};
    newText = fitted(*this, landing, none, newText);
    landing = landingAt(*this, position, after, newText);
    requireUnlocked(*this, none, &landing, newText);
  }
  requirePossible(*this, {position, {}}, &landing);
  ++stamp_;
  return put({landing.at, landing.at}, newText, landing);
}

bool Story::isColourless(const Structure& structure) const {
  if (structure.rowMark || structure.restriction == kNone) return structure.rowMark;
  return restrictions()[static_cast<std::size_t>(structure.restriction)].of == Restriction::Of::highlight;
}

bool Story::besideText(Position position) const { return position > 0 && !endsParagraph(position - 1); }

Span Story::put(Span replaced, std::u16string_view text, const Landing& landing) {
  if (observer_ != nullptr) observer_->aboutToChange();
  const auto length = static_cast<Position>(text.size());
  text_.replace(replaced.from, replaced.to, text, landing.anchor);
  visibility_.replace(replaced.from, replaced.to, length, landing.visibility);
  highlight_.replace(replaced.from, replaced.to, length, landing.highlight);
  structure_.replace(replaced.from, replaced.to, length, landing.structure);
  liveRanges_.moveWith(replaced, length);
  finds_.edited(replaced, length);
  measures_.edited(replaced, length);
  changed_ = wasEdited_ = true;
  countParts();
  if (observer_ != nullptr) observer_->replaced(*this, replaced, length);
  return {replaced.from, replaced.from + length};
}

void Story::highlight(Span span, std::uint8_t colour) {
  if (medium_ != nullptr && !medium_->holdsHighlight()) {
    throw errors::Fault(word::kNotAvailable,
                        u"A document of this kind has no place for highlighting; save it as .docx first.")
        .with(errors::Problem::unsupported);
  }
  requireUnlocked(*this, span);
  requirePossible(*this, span);
  if (!rivals_.empty()) requireOnlyHere(span, span);
  bool changes = false;
  for (const auto& run : structure_.runs(span.from, span.to)) {
    const auto coloured = highlight_.runAt(run.from);
    if (isColourless(run.value) || (coloured.value == colour && run.to <= coloured.to)) continue;
    if (!changes) requireRoomForParts();
    if (!changes && observer_ != nullptr) observer_->aboutToChange();
    changes = true;
    highlight_.set(run.from, run.to, colour);
  }
  if (!changes) return;
  changed_ = wasEdited_ = true;
  countParts();
  if (observer_ != nullptr) observer_->highlighted(*this, span);
}

void Story::restore(Snapshot snapshot) {
  if (observer_ != nullptr) observer_->aboutToChange();
  const std::vector<Difference> changes = differences(text_, snapshot.text);
  const Position before = length();
  text_ = std::move(snapshot.text);
  visibility_ = std::move(snapshot.visibility);
  highlight_ = std::move(snapshot.highlight);
  structure_ = std::move(snapshot.structure);
  countParts();
  if (!changes.empty()) {
    const Position same = changes.front().gone.from;
    finds_.edited({same, before}, length() - same);
    measures_.edited({same, before}, length() - same);
  }
  ++stamp_;
  changed_ = snapshot.changed || snapshot.saves != saves_;
  for (const Difference& change : changes) {
    liveRanges_.moveWith(change.gone, change.come);
    if (observer_ != nullptr) observer_->replaced(*this, change.gone, change.come);
  }
  if (observer_ != nullptr) observer_->highlighted(*this, {0, length()});
}

}  // namespace pluvo::document
