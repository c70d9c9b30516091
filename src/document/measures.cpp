#include "document/measures.h"

#include <limits>
#include <utility>

namespace pluvo::document {

using text::Move;
using text::Position;
using text::Span;
using text::View;

namespace {

text::Unit unitOf(word::WdUnits unit) {
  switch (unit) {
    case word::wdWord:
      return text::Unit::word;
    case word::wdSentence:
      return text::Unit::sentence;
    default:
      return text::Unit::paragraph;
  }
}

}  // namespace

Measures::Measures(const text::PieceText& text, const text::RunMap<text::Visibility>& visibility,
                   std::function<bool(Position)> endsParagraph)
    : units_(text, std::move(endsParagraph)),
      results_(visibility, View::results),
      codes_(visibility, View::codes) {}

Position Measures::count(Span span, word::WdUnits unit, View view) const {
  wasAsked_ = true;
  if (unit == word::wdCharacter) return characters(view).count(span.from, span.to);
  return units_.count(unitOf(unit), span.from, span.to);
}

Move Measures::move(Position position, word::WdUnits unit, Position count, View view) const {
  wasAsked_ = true;
  if (count >= 0) {
    return unit == word::wdCharacter ? characters(view).forward(position, count)
                                     : units_.forward(unitOf(unit), position, count);
  }
  const Position back = count == std::numeric_limits<Position>::min() ? text::kMaxLength : -count;
  Move move = unit == word::wdCharacter ? characters(view).backward(position, back)
                                        : units_.backward(unitOf(unit), position, back);
  move.moved = -move.moved;
  return move;
}

void Measures::edited(Span replaced, Position newLength) {
  if (!wasAsked_) return;
  units_.edited(replaced.from, replaced.to, newLength);
  results_.edited(replaced.from, replaced.to, newLength);
  codes_.edited(replaced.from, replaced.to, newLength);
}

}  // namespace pluvo::document
