#include "wrapping.h"

#include <QFontMetrics>
#include <QStringList>

namespace pluvo::forms_qt {

namespace {

QStringList broken(const QStringList& words, const QFontMetrics& metrics, int width) {
  QStringList broken;
  for (const QString& word : words) {
    if (!broken.isEmpty()) {
      const QString longer = broken.back() + u' ' + word;
      if (metrics.size(Qt::TextShowMnemonic, longer).width() <= width) {
        broken.back() = longer;
        continue;
      }
    }
    broken.push_back(word);
  }
  return broken;
}

}  // namespace

QString wrapped(const QString& text, const QFontMetrics& metrics, int width) {
  if (metrics.size(Qt::TextShowMnemonic, text).width() <= width) return text;
  const QStringList words = text.split(u' ');
  QStringList best = broken(words, metrics, width);
  constexpr int kStep = 4;
  for (int narrower = width - kStep; narrower > 0; narrower -= kStep) {
    const QStringList tighter = broken(words, metrics, narrower);
    if (tighter.size() > best.size()) break;
    best = tighter;
  }
  return best.join(u'\n');
}

const QString& WrappedText::in(const QString& text, const QFontMetrics& metrics, int width) {
  constexpr std::size_t kMost = 64;
  if (text != text_ || metrics_ != metrics || byWidth_.size() >= kMost) {
    byWidth_.clear();
    text_ = text;
    metrics_ = metrics;
  }
  const auto [known, isNew] = byWidth_.try_emplace(width);
  if (isNew) known->second = wrapped(text, metrics, width);
  return known->second;
}

}  // namespace pluvo::forms_qt
