#include "texts.h"

#include <QStringList>
#include <QStringView>

namespace pluvo::forms_qt {

namespace {

constexpr QChar kBreak(0x200B);

bool isMark(const std::u16string& caption, std::size_t at) {
  return caption[at] == u'&' && at + 1 < caption.size() && QChar(caption[at + 1]).isLetterOrNumber();
}

bool isPair(const std::u16string& caption, std::size_t at) {
  return caption[at] == u'&' && at + 1 < caption.size() && caption[at + 1] == u'&';
}

/// "cboxLevelsDeep" is "Levels Deep".
QString readName(const std::u16string& name) {
  const QString text = qt(name);
  qsizetype from = 0;
  while (from < text.size() && text[from].isLower()) ++from;
  QString read;
  for (const QChar letter : QStringView(text).mid(from)) {
    if (letter.isDigit()) continue;
    if (letter.isUpper() && !read.isEmpty() && !read.back().isUpper()) read += u' ';
    read += letter;
  }
  return read.isEmpty() ? text : read;
}

}  // namespace

QString qt(const std::u16string& text) { return QStringView(text).toString(); }

std::u16string u16(const QString& text) { return text.toStdU16String(); }

QString marked(const std::u16string& caption) {
  QString text;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    if (caption[at] != u'&' || isMark(caption, at)) {
      text += QChar(caption[at]);
      continue;
    }
    text += u"&&";
    if (isPair(caption, at)) ++at;
  }
  return text;
}

QString unmarked(const std::u16string& caption) {
  QString text;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    if (isMark(caption, at)) continue;
    text += QChar(caption[at]);
    if (isPair(caption, at)) ++at;
  }
  return text;
}

QString toolTip(const std::u16string& tip) {
  constexpr qsizetype kLetters = 60;
  if (tip.empty()) return {};
  QString text;
  qsizetype length = 0;
  for (const QString& word : qt(tip).split(u' ')) {
    const bool breaks = length > 0 && length + 1 + word.size() > kLetters;
    if (breaks) length = 0;
    if (!text.isEmpty()) text += breaks ? u'\n' : u' ';
    text += word;
    length += word.size() + 1;
  }
  // In plain text the widgets would look for markup.
  return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(text.toHtmlEscaped());
}

QString breakable(const QString& text) {
  constexpr int kLetters = 30;
  QString broken;
  int run = 0;
  for (const QChar letter : text) {
    broken += letter;
    run = letter.isSpace() ? 0 : run + 1;
    const bool between = letter == u'/' || letter == u'\\';
    if (run < kLetters || (!between && run < 2 * kLetters) || letter.isHighSurrogate()) continue;
    broken += kBreak;
    run = 0;
  }
  return broken;
}

QString unbroken(QString text) { return text.remove(kBreak); }

QString lines(const std::u16string& text) {
  QString shown = qt(text);
  shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  shown.replace(u'\r', u'\n');
  return shown;
}

std::u16string linesBack(const QString& raw) {
  std::u16string text;
  text.reserve(static_cast<std::size_t>(raw.size()));
  for (const QChar letter : raw) {
    if (letter == QChar::ParagraphSeparator || letter == u'\n') {
      text += u"\r\n";
    } else {
      text += letter.unicode();
    }
  }
  return text;
}

QString spokenName(const forms::Control& control) {
  constexpr std::size_t kShort = 60;
  if (!control.Caption().empty()) return unmarked(control.Caption()).simplified();
  const std::u16string& tip = control.ControlTipText();
  return tip.empty() || tip.size() > kShort ? readName(control.Name()) : qt(tip);
}

}  // namespace pluvo::forms_qt
