// Straightforward finds, counts and moves until those of the text room are there.
#include "model/model.h"

#include <cwctype>

namespace pluvo::model {

using text::Position;
using text::Span;
using text::View;

namespace {

bool isWordUnit(char16_t c) { return c >= 0x80 ? c != 0xA0 : std::iswalnum(c) != 0; }

enum class Kind { blank, word, other, single };
Kind kindOf(char16_t c) {
  if (c == u' ' || c == 0xA0) return Kind::blank;
  if (c < 32) return Kind::single;
  return isWordUnit(c) ? Kind::word : Kind::other;
}

bool startsWord(const Model& m, Position p) {
  const Kind here = kindOf(m.text().at(p));
  if (p == 0) return true;
  const Kind before = kindOf(m.text().at(p - 1));
  if (here == Kind::blank) return m.endsParagraph(p - 1);
  return here == Kind::single || here != before;
}

bool startsSentence(const Model& m, Position p) {
  if (p == 0 || m.endsParagraph(p - 1)) return true;
  const auto blank = [&](Position at) { return m.text().at(at) == u' ' || m.text().at(at) == u'\t'; };
  if (!blank(p - 1) || blank(p) || m.endsParagraph(p)) return false;
  Position q = p - 1;
  while (q > 0 && blank(q)) --q;
  const char16_t c = m.text().at(q);
  return c == u'.' || c == u'?' || c == u'!';
}

bool startsUnit(const Model& m, Position p, word::WdUnits unit, View view) {
  switch (unit) {
    case word::wdCharacter:
      return text::isVisible(m.visibility().valueAt(p), view);
    case word::wdWord:
      return startsWord(m, p);
    case word::wdSentence:
      return startsSentence(m, p);
    default:
      return p == 0 || m.endsParagraph(p - 1);
  }
}

}  // namespace

Position Model::count(Span span, word::WdUnits unit, View view) const {
  if (unit == word::wdCharacter) return static_cast<Position>(visibleText(span, view).size());
  Position count = 1;
  for (Position p = span.from + 1; p < span.to; ++p) count += startsUnit(*this, p, unit, view) ? 1 : 0;
  return count;
}

text::Move Model::move(Position position, word::WdUnits unit, Position count, View view) const {
  text::Move move{position, 0};
  while (count > 0 && move.moved < count && move.position < length()) {
    if (unit == word::wdCharacter) {
      while (move.position < length() && !startsUnit(*this, move.position, unit, view)) ++move.position;
      if (move.position == length()) break;
      ++move.position;
    } else {
      do ++move.position;
      while (move.position < length() && !startsUnit(*this, move.position, unit, view));
    }
    ++move.moved;
  }
  while (count < 0 && move.moved > count && move.position > 0) {
    do --move.position;
    while (move.position > 0 && !startsUnit(*this, move.position, unit, view));
    --move.moved;
  }
  return move;
}

}  // namespace pluvo::model
