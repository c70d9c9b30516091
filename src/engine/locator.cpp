#include "locator.h"

#include "errors/text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace pluvo::engine {

namespace {

std::int32_t narrowedLength(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
    throw errors::overflow();
  return static_cast<std::int32_t>(value);
}

/// By how many characters the full text is longer than the match of its search text.
std::int32_t missing(const std::u16string& fullText, word::Range& match) {
  return narrowedLength(static_cast<std::int64_t>(fullText.size()) - match.Characters().Count());
}

}  // namespace

word::Range& required(const std::shared_ptr<word::Range>& range) {
  if (!range) throw errors::objectNotSet();
  return *range;
}

void WorkingRanges::place(word::Application& application, bool atTop) {
  for (std::shared_ptr<word::Range>* range : {&block, &begin, &end, &inside}) {
    const std::int32_t position = atTop ? 0 : application.Selection()->Start();
    *range = application.ActiveDocument()->Range(position, position);
  }
}

bool Locator::find(word::Range& range, const std::u16string& text) {
  const std::shared_ptr<word::Find> find = range.Find();
  find->ClearFormatting();
  find->Text(text);
  find->Forward(true);
  find->MatchCase(search_.matchCase);
  find->MatchWholeWord(search_.wholeWords);
  find->MatchWildcards(false);
  find->MatchSoundsLike(false);
  find->MatchAllWordForms(false);
  find->Wrap(word::wdFindStop);
  return find->Execute();
}

bool Locator::findBeginAndEnd() {
  return errors::guarded(context_, u"cpf:35", [&] {
    word::Range& block = required(ranges_.block);
    word::Range& begin = required(ranges_.begin);
    if (!find(begin, search_.begin.search)) return false;
    const std::int32_t start = begin.Start();
    const std::int32_t stop = begin.End();
    // A host that finds nothing as something would be asked for ever.
    if (start >= stop) return false;
    block.SetRange(start, stop);
    if (search_.end.search.empty()) return true;
    word::Range& end = required(ranges_.end);
    if (search_.liftLimits) {
      end.SetRange(stop, stop);
    } else {
      // Where the end range's End lies beyond, left there by an earlier block, the find stops at it.
      end.Start(block.End());
    }
    if (!find(end, search_.end.search)) return false;
    block.End(end.End());
    return true;
  });
}

bool Locator::checkUnitsApart() {
  return errors::guarded(context_, u"cpf:34", [&] {
    const auto count = [&](word::Range& range) {
      switch (search_.unitType) {
        case kWords:
          return range.Words().Count();
        case kSentences:
          return range.Sentences().Count();
        default:
          return range.Paragraphs().Count();
      }
    };
    switch (search_.unitType) {
      case kWords:
      case kSentences:
      case kParagraphs: {
        const std::int64_t apart =
            std::int64_t{count(required(ranges_.block))} - count(required(ranges_.begin));
        const std::int64_t between = std::int64_t{narrowedLength(apart)} - count(required(ranges_.end));
        return narrowedLength(between) <= search_.distance;
      }
      case kEntireDocument:
        return true;
      default:
        return false;
    }
  });
}

bool Locator::findInsideText() {
  return errors::guarded(context_, u"cpf:33", [&] {
    word::Range& inside = required(ranges_.inside);
    inside.SetRange(required(ranges_.begin).End(), required(ranges_.end).Start());
    return find(inside, search_.inside.search);
  });
}

bool Locator::matchFullText(word::Range& range, const std::u16string& fullText) {
  return errors::guarded(context_, u"cpf:41", [&] {
    const auto whole = application_.ActiveDocument()->Range(range.Start(), range.End());
    required(whole).MoveEnd(word::wdCharacter, missing(fullText, range));
    return normalized(whole->Text()) == fullText;
  });
}

Locator::Verdict Locator::judge() {
  word::Range& block = required(ranges_.block);
  word::Range& begin = required(ranges_.begin);
  word::Range& end = required(ranges_.end);
  if (!search_.end.search.empty() && !checkUnitsApart()) return Verdict::tooFar;
  if (search_.begin.cut) {
    if (!matchFullText(begin, search_.begin.full)) return Verdict::mismatch;
    const std::int32_t more = missing(search_.begin.full, begin);
    std::int16_t narrow = 0;
    if (!search_.liftLimits) narrow = errors::narrow(more);
    begin.MoveEnd(word::wdCharacter, search_.liftLimits ? word::MoveCount(more) : word::MoveCount(&narrow));
    if (end.End() == 0) block.End(begin.End());
  }
  if (search_.end.cut && end.End() >= 1) {
    if (!matchFullText(end, search_.end.full)) return Verdict::mismatch;
    end.MoveEnd(word::wdCharacter, missing(search_.end.full, end));
    block.End(end.End());
  }
  if (search_.inside.search.empty()) return Verdict::block;
  if (!findInsideText()) return Verdict::mismatch;
  if (!search_.inside.cut) return Verdict::block;
  word::Range& inside = required(ranges_.inside);
  if (!matchFullText(inside, search_.inside.full)) return Verdict::mismatch;
  inside.MoveEnd(word::wdCharacter, missing(search_.inside.full, inside));
  return Verdict::block;
}

bool Locator::next() {
  while (findBeginAndEnd()) {
    switch (judge()) {
      case Verdict::block:
        return true;
      case Verdict::mismatch:
        resumeBehindBlock(0);
        break;
      case Verdict::tooFar:
        resumeBehindBeginning();
        break;
    }
  }
  return false;
}

void Locator::resumeBehindBlock(std::int32_t position) {
  word::Range& block = required(ranges_.block);
  const auto start = [&] { return std::max(position, block.End()); };
  required(ranges_.begin).Start(start());
  block.Start(start());
  required(ranges_.end).Start(start());
}

void Locator::resumeBehindBeginning() {
  word::Range& begin = required(ranges_.begin);
  word::Range& end = required(ranges_.end);
  begin.Start(begin.End());
  required(ranges_.block).Start(begin.End());
  end.Start(begin.End());
  // As many characters as the position's number: it bounds the next search for an ending.
  if (!search_.liftLimits) end.MoveStart(word::wdCharacter, begin.End());
}

}  // namespace pluvo::engine
