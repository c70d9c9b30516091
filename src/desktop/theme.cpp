#include "theme.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QSettings>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>

namespace pluvo::desktop {

namespace {

QString key() { return QStringLiteral("colours"); }

QPalette made(const QColor& window, const QColor& base, const QColor& text, const QColor& accent,
              const QColor& link) {
  const bool dark = window.lightness() < 128;
  QPalette colours(text, window);
  colours.setColor(QPalette::Base, base);
  colours.setColor(QPalette::AlternateBase, dark ? base.lighter(130) : base.darker(104));
  colours.setColor(QPalette::Button, dark ? window.lighter(125) : window);
  colours.setColor(QPalette::ButtonText, text);
  colours.setColor(QPalette::ToolTipBase, dark ? window.lighter(140) : QColor(0xFFFFDC));
  colours.setColor(QPalette::ToolTipText, dark ? text : QColor(Qt::black));
  colours.setColor(QPalette::Highlight, accent);
  colours.setColor(QPalette::HighlightedText, Qt::white);
  colours.setColor(QPalette::Link, link);
  colours.setColor(QPalette::LinkVisited, link);
  colours.setColor(QPalette::Mid, dark ? window.lighter(190) : window.darker(135));
  colours.setColor(QPalette::Light, dark ? window.lighter(150) : QColor(Qt::white));
  colours.setColor(QPalette::Dark, dark ? window.darker(150) : window.darker(160));
  QColor faint = text;
  faint.setAlphaF(0.45F);
  colours.setColor(QPalette::PlaceholderText, faint);
  const QColor off = dark ? QColor(0x808488) : QColor(0x8A8D91);
  for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    colours.setColor(QPalette::Disabled, role, off);
  return colours;
}

/// Among dark colours the system's style shows the focus by an invisible shade: here it has a bright
/// frame.
class FocusShown final : public QProxyStyle {
 public:
  using QProxyStyle::QProxyStyle;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameFocusRect || element == PE_FrameLineEdit || element == PE_PanelButtonCommand ||
        element == PE_Frame)
      frame(*option, *painter, option->rect);
  }
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ShapedFrame && qobject_cast<const QAbstractScrollArea*>(widget) != nullptr)
      frame(*option, *painter, option->rect);
    if (element == CE_TabBarTabShape) frame(*option, *painter, option->rect.adjusted(2, 2, -2, -2));
  }
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox) frame(*option, *painter, option->rect);
  }

 private:
  static void frame(const QStyleOption& option, QPainter& painter, const QRect& rect) {
    if (!option.state.testFlag(State_HasFocus) || option.palette.color(QPalette::Window).lightness() >= 128)
      return;
    constexpr qreal kWidth = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(option.palette.color(QPalette::Link), kWidth));
    painter.drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), kWidth, kWidth);
    painter.restore();
  }
};

void apply(Theme theme) {
  static const QString systemStyle = QApplication::style()->objectName();
  if (theme == Theme::system) {
    QApplication::setStyle(new FocusShown(QStyleFactory::create(systemStyle)));
    QApplication::setPalette(QPalette());
    return;
  }
  QApplication::setStyle(new FocusShown(QStyleFactory::create(QStringLiteral("Fusion"))));
  QApplication::setPalette(
      theme == Theme::dark
          ? made(QColor(0x2B2D30), QColor(0x1E1F22), QColor(0xE4E6E8), QColor(0x2F6FBA), QColor(0x6CB0FF))
          : made(QColor(0xF1F2F4), QColor(0xFFFFFF), QColor(0x1C1E21), QColor(0x2A6FC0), QColor(0x1B5FB0)));
}

}  // namespace

Theme chosenTheme() {
  const QString name = QSettings().value(key()).toString();
  if (name == QLatin1String("light")) return Theme::light;
  return name == QLatin1String("dark") ? Theme::dark : Theme::system;
}

void chooseTheme(Theme theme) {
  const char* const name = theme == Theme::dark ? "dark" : theme == Theme::light ? "light" : "system";
  QSettings().setValue(key(), QLatin1String(name));
  apply(theme);
}

void applyChosenTheme() { apply(chosenTheme()); }

}  // namespace pluvo::desktop
