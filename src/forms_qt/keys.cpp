#include "keys.h"

namespace pluvo::forms_qt {

namespace {

qsizetype markIn(const QString& marked) {
  for (qsizetype at = 0; at + 1 < marked.size(); ++at) {
    if (marked[at] != u'&') continue;
    if (marked[at + 1] != u'&') return at;
    ++at;
  }
  return -1;
}

}  // namespace

QChar markedKey(const QString& marked) {
  const qsizetype mark = markIn(marked);
  return mark < 0 ? QChar() : marked[mark + 1].toUpper();
}

QString withKey(const QString& marked, QChar key) {
  if (key.isNull() || markIn(marked) >= 0) return marked;
  qsizetype before = -1;
  for (qsizetype at = 0; at < marked.size(); ++at) {
    if (marked[at].toUpper() != key) continue;
    const bool begins = at == 0 || !marked[at - 1].isLetterOrNumber();
    if (before < 0 || begins) before = at;
    if (begins) break;
  }
  return before < 0 ? marked : QString(marked).insert(before, u'&');
}

QChar takeKey(const QString& marked, TakenKeys& taken) {
  if (const QChar key = markedKey(marked); !key.isNull()) {
    taken.insert(key);
    return key;
  }
  for (const bool beginnings : {true, false}) {
    for (qsizetype at = 0; at < marked.size(); ++at) {
      const QChar letter = marked[at].toUpper();
      const bool begins = at == 0 || !marked[at - 1].isLetterOrNumber();
      if (letter.isLetter() && (begins || !beginnings) && taken.insert(letter).second) return letter;
    }
  }
  return {};
}

void giveKeys(const std::vector<Mirror*>& mirrors, TakenKeys taken) {
  for (const Mirror* mirror : mirrors) {
    if (const QChar key = markedKey(mirror->keyText()); !key.isNull()) taken.insert(key);
  }
  // Boxes and buttons are used more often than ticks.
  for (const bool ticks : {false, true}) {
    for (Mirror* mirror : mirrors) {
      if ((mirror->control().kind() == forms::ControlKind::checkBox) == ticks && !mirror->keyText().isEmpty())
        mirror->key(takeKey(mirror->keyText(), taken));
    }
  }
  for (Mirror* mirror : mirrors) mirror->giveInnerKeys(taken);
}

}  // namespace pluvo::forms_qt
