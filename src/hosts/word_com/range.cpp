#include "range.h"

#include "base/text.h"
#include "errors/fault.h"
#include "find.h"
#include "units.h"
#include "word/faults.h"

#include <optional>
#include <variant>

namespace pluvo::word_com {

void ComRange::Start(std::int32_t position) {
  const auto put = [&](std::int32_t place) { range_.put(L"Start", Arguments().integer(place)); };
  put(position);
  if (Start() >= position) return;
  range_.session().log.line(u"a start was moved back by " + base::decimal(position - Start()));
  // Whatever holds the place ends somewhere: steps that double find a place after it, half steps the first.
  std::int32_t inside = position;
  std::int32_t step = 1;
  bool isThere = true;
  const auto isAfter = [&](std::int32_t place) {
    try {
      put(place);
      isThere = true;
      return Start() >= position;
    } catch (const errors::Fault& fault) {
      if (fault.number != word::kValueOutOfRange) throw;
      isThere = false;
      return true;
    }
  };
  while (!isAfter(inside + step)) {
    inside += step;
    step *= 2;
  }
  for (; step > 1; step /= 2)
    if (!isAfter(inside + step / 2)) inside += step / 2;
  isAfter(inside + 1);
  // At the end of the document Word stays before its last mark.
  if (!isThere) put(position);
}

void ComRange::SetRange(std::int32_t start, std::int32_t end) {
  range_.call(L"SetRange", Arguments().integer(start).integer(end));
}

void ComRange::Text(const std::u16string& text) {
  range_.put(L"Text", Arguments().text(base::withParagraphMarks(text)));
}

std::int32_t ComRange::MoveStart(word::WdUnits unit, word::MoveCount count) {
  return move(L"MoveStart", unit, count);
}

std::int32_t ComRange::MoveEnd(word::WdUnits unit, word::MoveCount count) {
  return move(L"MoveEnd", unit, count);
}

std::int32_t ComRange::move(const wchar_t* method, word::WdUnits unit, word::MoveCount count) const {
  const auto* reference = std::get_if<std::int16_t*>(&count);
  const Arguments arguments = reference != nullptr
                                  ? Arguments().integer(unit).reference(*reference)
                                  : Arguments().integer(unit).integer(std::get<std::int32_t>(count));
  return range_.call(method, arguments).toInteger();
}

void ComRange::InsertBefore(const std::u16string& text) {
  range_.call(L"InsertBefore", Arguments().text(base::withParagraphMarks(text)));
}

void ComRange::InsertAfter(const std::u16string& text) {
  range_.call(L"InsertAfter", Arguments().text(base::withParagraphMarks(text)));
}

std::int32_t ComRange::Delete() {
  if (!span().spans()) return 0;
  return range_.call(L"Delete", Arguments().missing(2)).toInteger();
}

void ComRange::HighlightColorIndex(std::int32_t colour) {
  range_.put(L"HighlightColorIndex", Arguments().integer(colour));
}

std::shared_ptr<word::Find> ComRange::Find() {
  return std::make_shared<ComFind>(range_.getObject(L"Find", L"Find"), shared_from_this());
}

word::WdStoryType ComRange::StoryType() {
  return static_cast<word::WdStoryType>(range_.get(L"StoryType").toInteger());
}

std::shared_ptr<word::Range> ComRange::NextStoryRange() {
  const std::optional<Object> next = range_.findObject(L"NextStoryRange", L"Range");
  return next ? std::make_shared<ComRange>(*next, document_, false) : nullptr;
}

std::u16string ComRange::textAt(Span span) const {
  const Arguments ends = Arguments().integer(span.start).integer(span.end);
  try {
    if (inMainText_) return document_.callObject(L"Range", L"Range", ends).get(L"Text").toText();
    const Object copy = range_.getObject(L"Duplicate", L"Range");
    copy.call(L"SetRange", ends);
    return copy.get(L"Text").toText();
  } catch (const errors::Fault& fault) {
    if (fault.number != word::kValueOutOfRange) throw;
    return {};
  }
}

/// A range that begins with this one and has so many units reaches its end, or does not.
bool ComRange::isAtMost(word::WdUnits unit, std::int32_t most) {
  const Span whole = span();
  if (!whole.spans()) return countOf(unit) <= most;
  if (most <= 0) return false;
  const Object reach =
      document_.callObject(L"Range", L"Range", Arguments().integer(whole.start).integer(whole.start));
  reach.call(L"MoveEnd", Arguments().integer(unit).integer(most));
  return reach.get(L"End").toInteger() >= whole.end;
}

/// Word's units include the one that an insertion point is in; an empty range has no characters all the same.
std::int32_t ComRange::countOf(word::WdUnits unit) {
  if (unit == word::wdCharacter && !span().spans()) return 0;
  return countOfUnits(range_, unit);
}

}  // namespace pluvo::word_com
