#pragma once

#include <QCheckBox>
#include <QPushButton>
#include <QStyleOptionButton>
#include <map>
#include <optional>
#include <type_traits>

namespace pluvo::forms_qt {

/// The text with line ends put between words: as few lines as the width allows, and of like lengths. No line
/// is wider than the width unless a word is. "&" marks keys.
QString wrapped(const QString& text, const QFontMetrics& metrics, int width);

/// Remembers how one text was wrapped: a layout asks for the same few widths again and again.
class WrappedText {
 public:
  const QString& in(const QString& text, const QFontMetrics& metrics, int width);

 private:
  QString text_;
  std::optional<QFontMetrics> metrics_;
  std::map<int, QString> byWidth_;
};

/// A button or check box whose text is broken into lines where its place is narrow. The text itself stays
/// whole.
template <class Button>
class Wrapping final : public Button {
 public:
  explicit Wrapping(QWidget* parent) : Button(parent) {
    QSizePolicy policy = this->sizePolicy();
    policy.setHeightForWidth(true);
    policy.setHorizontalPolicy(QSizePolicy::Preferred);
    policy.setVerticalPolicy(QSizePolicy::Preferred);
    this->setSizePolicy(policy);
  }

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return sizeOf(wrappedTo(width)).height(); }
  QSize sizeHint() const override { return sizeOf(this->text()); }
  QSize minimumSizeHint() const override {
    return {sizeOf(wrappedTo(0)).width(), sizeOf(this->text()).height()};
  }

 protected:
  void initStyleOption(QStyleOptionButton* option) const override {
    Button::initStyleOption(option);
    option->text = wrappedTo(this->width());
  }

 private:
  static constexpr auto kContents =
      std::is_same_v<Button, QPushButton> ? QStyle::CT_PushButton : QStyle::CT_CheckBox;

  QSize sizeOf(const QString& text) const {
    this->ensurePolished();
    QStyleOptionButton option;
    Button::initStyleOption(&option);
    option.text = text;
    QSize size = this->fontMetrics().size(Qt::TextShowMnemonic, text);
    if (kContents == QStyle::CT_CheckBox)
      size.setHeight(
          qMax(size.height(), this->style()->pixelMetric(QStyle::PM_IndicatorHeight, &option, this)));
    return this->style()->sizeFromContents(kContents, &option, size, this);
  }
  QString wrappedTo(int width) const {
    const QFontMetrics metrics = this->fontMetrics();
    const int frame = sizeOf(this->text()).width() - metrics.size(Qt::TextShowMnemonic, this->text()).width();
    return wrapped_.in(this->text(), metrics, width - frame);
  }

  mutable WrappedText wrapped_;
};

}  // namespace pluvo::forms_qt
