#include "locator.h"

#include "errors/numbers.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace pluvo::engine {

namespace {

std::int32_t difference(std::int64_t left, std::int32_t right) {
  const std::int64_t value = left - right;
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    throw errors::overflow();
  return static_cast<std::int32_t>(value);
}

/// By how many characters the full text is longer than the match of its search text.
std::int32_t missing(const std::u16string& fullText, word::Range& match) {
  return difference(static_cast<std::int64_t>(fullText.size()), match.Characters().Count());
}

using Units = word::UnitCollection (*)(word::Range&);

/// None for a code that is no unit.
Units unitsOf(UnitCode unit) {
  switch (unit) {
    case kWords:
      return [](word::Range& range) { return range.Words(); };
    case kSentences:
      return [](word::Range& range) { return range.Sentences(); };
    case kParagraphs:
      return [](word::Range& range) { return range.Paragraphs(); };
    default:
      return nullptr;
  }
}

std::int32_t sum(std::int64_t left, std::int64_t right) {
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(left + right, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

void moveSelectionToTop(word::Application& application) {
  const auto selection = application.Selection();
  required(selection).SetRange(0, 0);
}

namespace {

/// All four, collapsed where `position` says.
template <class Position>
WorkingRanges rangesAt(word::Application& application, std::int32_t story, Position position) {
  WorkingRanges placed;
  placed.story = story;
  for (std::shared_ptr<word::Range>* range : {&placed.block, &placed.begin, &placed.end, &placed.inside}) {
    const std::int32_t at = position();
    const auto document = application.ActiveDocument();
    *range = required(document).rangeIn(story, at, at);
  }
  return placed;
}

}  // namespace

void WorkingRanges::place(word::Application& application, word::StoryKinds stories, bool atTop) {
  const auto isThere = [&](word::Selection& selection) {
    return !atTop && (word::kindsOf(selection.StoryType()) & stories) != 0;
  };
  std::optional<std::int32_t> first = 0;
  if (stories != word::kMainTextAlone) {
    const auto document = application.ActiveDocument();
    const auto selection = application.Selection();
    first = required(document).nextStory(stories, isThere(required(selection)) ? selection->story() : 0);
    if (!first) return;
  }
  *this = rangesAt(application, *first, [&] {
    if (atTop) return 0;
    const auto selection = application.Selection();
    return isThere(required(selection)) && selection->story() == *first ? selection->Start() : 0;
  });
}

bool WorkingRanges::placeInNext(word::Application& application, word::StoryKinds stories) {
  if (stories == word::kMainTextAlone) return false;
  const auto document = application.ActiveDocument();
  const auto next = required(document).nextStory(stories, story + 1);
  if (next) *this = rangesAt(application, *next, [] { return 0; });
  return next.has_value();
}

bool Locator::find(word::Range& range, std::shared_ptr<word::Find>& prepared, const SearchText& text) {
  if (prepared) return prepared->Execute();
  const auto object = range.Find();
  word::Find& find = required(object);
  find.ClearFormatting();
  if (text.whole) {
    find.WholeText(text.whole);
  } else {
    find.Text(text.search);
  }
  find.Forward(true);
  find.MatchCase(search_.request.matchCase);
  find.MatchWholeWord(search_.wholeWords);
  find.MatchWildcards(false);
  find.MatchSoundsLike(false);
  find.MatchAllWordForms(false);
  find.Wrap(word::wdFindStop);
  if (search_.request.liftLimits) prepared = object;
  return find.Execute();
}

bool Locator::FindBeginAndEnd() {
  return errors::guarded(trail_, u"cpf:35", [&] {
    word::Range& block = required(ranges_.block);
    word::Range& begin = required(ranges_.begin);
    if (!find(begin, ranges_.beginFind, search_.begin)) return false;
    const std::int32_t start = begin.Start();
    const std::int32_t from = begin.End();
    // A host may say that it found an empty text, and would say so for ever.
    if (start == from) return false;
    block.SetRange(start, from);
    if (!hasEnding()) return true;

    word::Range& end = required(ranges_.end);
    if (search_.request.liftLimits) {
      end.SetRange(from, from);
    } else {
      end.Start(from);  // where its End lies beyond, left there by an earlier block, the find stops at it
    }
    if (!find(end, ranges_.endFind, search_.end)) return false;
    block.End(end.End());
    return true;
  });
}

bool Locator::CheckUnitsApart() {
  return errors::guarded(trail_, u"cpf:34", [&] {
    if (search_.request.unit == kEntireDocument) return true;
    const auto of = unitsOf(search_.request.unit);
    if (of == nullptr) return false;
    word::Range& block = required(ranges_.block);
    word::Range& begin = required(ranges_.begin);
    word::Range& end = required(ranges_.end);
    // A long block is counted no farther than matters, and once where its texts stand in a unit each.
    if (search_.request.liftLimits) {
      if (of(block).isAtMost(sum(2, search_.request.distance))) return true;
      const std::int32_t ofTexts = sum(of(begin).Count(), of(end).Count());
      return ofTexts > 2 && of(block).isAtMost(sum(ofTexts, search_.request.distance));
    }
    const std::int32_t afterBegin = difference(of(block).Count(), of(begin).Count());
    return difference(afterBegin, of(end).Count()) <= search_.request.distance;
  });
}

bool Locator::FindInsideText() {
  return errors::guarded(trail_, u"cpf:33", [&] {
    const std::int32_t from = required(ranges_.begin).End();
    const std::int32_t to = required(ranges_.end).Start();
    // A collapsed range would be searched to the end of the document.
    if (from >= to) return false;
    word::Range& inside = required(ranges_.inside);
    inside.SetRange(from, to);
    return find(inside, ranges_.insideFind, search_.inside);
  });
}

bool Locator::MatchFullText(word::Range& range, const std::u16string& fullText) {
  return errors::guarded(trail_, u"cpf:41", [&] {
    const auto document = application_.ActiveDocument();
    const auto whole = required(document).rangeIn(ranges_.story, range.Start(), range.End());
    required(whole).MoveEnd(word::wdCharacter, missing(fullText, range));
    return NormalizeSearchText(trail_, whole->Text()) == fullText;
  });
}

/// Whether the texts that were cut for the find stand there in full. The ranges then cover them.
bool Locator::extendsToFullTexts() {
  word::Range& block = required(ranges_.block);
  word::Range& begin = required(ranges_.begin);
  word::Range& end = required(ranges_.end);
  if (search_.begin.cut) {
    if (!MatchFullText(begin, search_.begin.full)) return false;
    std::int16_t more = errors::narrow(missing(search_.begin.full, begin));
    begin.MoveEnd(word::wdCharacter, &more);
    if (end.End() == 0) block.End(begin.End());
  }
  if (search_.end.cut && end.End() >= 1) {
    if (!MatchFullText(end, search_.end.full)) return false;
    end.MoveEnd(word::wdCharacter, missing(search_.end.full, end));
    block.End(end.End());
  }
  return true;
}

bool Locator::holdsInsideText() {
  if (search_.inside.empty()) return true;
  if (!FindInsideText()) return false;
  if (!search_.inside.cut) return true;
  word::Range& inside = required(ranges_.inside);
  if (!MatchFullText(inside, search_.inside.full)) return false;
  inside.MoveEnd(word::wdCharacter, missing(search_.inside.full, inside));
  return true;
}

Locator::Verdict Locator::judge() {
  if (hasEnding() && !CheckUnitsApart()) return Verdict::tooFar;
  return extendsToFullTexts() && holdsInsideText() ? Verdict::block : Verdict::mismatch;
}

bool Locator::next(PassObserver& observer, PassResult& result) {
  while (true) {
    isStopped_ = observer.searching() == PassObserver::Next::stop;
    if (isStopped_ || !FindBeginAndEnd()) return false;
    switch (judge()) {
      case Verdict::block:
        ++result.found;
        return true;
      case Verdict::mismatch:
        resumeAfterBlock();
        break;
      case Verdict::tooFar:
        ++result.tooFar;
        observer.tooFar();
        resumeAfterBeginning();
        break;
    }
  }
}

void Locator::resumeAfterBlock(std::int32_t atLeast) {
  word::Range& block = required(ranges_.block);
  word::Range& begin = required(ranges_.begin);
  // Read again for each range: Word may move the block's end when a start is set.
  const auto place = [&] { return std::max(atLeast, block.End()); };
  begin.Start(place());
  block.Start(place());
  required(ranges_.end).Start(place());
}

void Locator::resumeAfterBeginning() {
  word::Range& begin = required(ranges_.begin);
  word::Range& end = required(ranges_.end);
  begin.Start(begin.End());
  required(ranges_.block).Start(begin.End());
  end.Start(begin.End());
  // As many characters as the position's number: it bounds the next search for an ending.
  if (!search_.request.liftLimits) end.MoveStart(word::wdCharacter, begin.End());
}

}  // namespace pluvo::engine
