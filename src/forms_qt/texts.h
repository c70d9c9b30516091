#pragma once

#include "forms/control.h"

#include <QString>
#include <string>

/// Texts on their way between forms and widgets.
namespace pluvo::forms_qt {

/// Letter for letter, lone surrogates included.
QString qt(const std::u16string& text);
std::u16string u16(const QString& text);

/// A caption for widgets in which "&" marks a key. Only one before a letter or a digit does so here; any
/// other is shown.
QString marked(const std::u16string& caption);
/// The caption as it is read, without marks.
QString unmarked(const std::u16string& caption);

/// A tool tip that is shown letter for letter, in lines of a readable length.
QString toolTip(const std::u16string& tip);

/// With places to break words of unreadable length, paths for instance, that show as nothing; and without.
QString breakable(const QString& text);
QString unbroken(QString text);

/// Line ends of any kind as the widgets have them.
QString lines(const std::u16string& text);
/// From a widget's raw text: paragraph ends become CR LF.
std::u16string linesBack(const QString& raw);

/// A screen reader's words for a control: its caption, else its tip where that is short, else its name in
/// words.
QString spokenName(const forms::Control& control);

}  // namespace pluvo::forms_qt
