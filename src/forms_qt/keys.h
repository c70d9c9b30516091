#pragma once

#include "mirror.h"

#include <QChar>
#include <QString>
#include <set>
#include <vector>

/// Keys that with Alt go straight to a control: those that captions mark, and for the others a letter of the
/// caption that is free.
namespace pluvo::forms_qt {

using TakenKeys = std::set<QChar>;

/// The letter after the mark, as a capital; nothing where there is no mark.
QChar markedKey(const QString& marked);
/// With a mark before the first such letter, unless there is a mark already.
QString withKey(const QString& marked, QChar key);
/// A letter of the text that is not taken, the beginnings of words first; nothing where all are. Takes it.
QChar takeKey(const QString& marked, TakenKeys& taken);

/// Gives keys to all that show together. What shows elsewhere at the same time has taken some.
void giveKeys(const std::vector<Mirror*>& mirrors, TakenKeys taken);

}  // namespace pluvo::forms_qt
