#include "look.h"

#include "texts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>

namespace pluvo::forms_qt {

namespace {

QColor qt(forms::Color color) {
  constexpr forms::Color kByte = 0xFF;
  constexpr int kGreen = 8;
  constexpr int kBlue = 16;
  return {static_cast<int>(color & kByte), static_cast<int>((color >> kGreen) & kByte),
          static_cast<int>((color >> kBlue) & kByte)};
}

QColor readableOn(const QColor& back) {
  constexpr int kMiddle = 128;
  return qGray(back.rgb()) < kMiddle ? QColor(Qt::white) : QColor(Qt::black);
}

bool hasColorOfItsOwn(const forms::Control& control) {
  return control.BackStyle() == forms::BackStyle::opaque && control.BackColor() != forms::kWhite;
}

}  // namespace

void dressBox(QWidget& box, const forms::Control& control) {
  QPalette palette;
  if (hasColorOfItsOwn(control)) {
    const QColor back = qt(control.BackColor());
    palette.setColor(QPalette::Base, back);
    palette.setColor(QPalette::Text, readableOn(back));
  } else if (control.BackStyle() == forms::BackStyle::transparent) {
    palette.setColor(QPalette::Base, QGuiApplication::palette().color(QPalette::Window));
  }
  box.setPalette(palette);
}

void dressLabel(QWidget& label, const forms::Control& control) {
  const bool own = hasColorOfItsOwn(control);
  QPalette palette;
  if (own) {
    const QColor back = qt(control.BackColor());
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::WindowText, readableOn(back));
  }
  label.setPalette(palette);
  label.setAutoFillBackground(own);
}

void setFont(QWidget& widget, const forms::Font& font) {
  const forms::Font usual;
  QFont face = QApplication::font();
  const QString name = forms_qt::qt(font.name);
  if (!font.name.empty() && font != usual) {
    QFont wanted(name);
    // The system may have another face for the name; what it has for any name will not do.
    const bool there =
        QFontDatabase::hasFamily(name) ||
        QFontInfo(wanted).family() != QFontInfo(QFont(QStringLiteral("no such face"))).family();
    if (there) face = wanted;
    face.setBold(!there);
  } else if (QFontDatabase::hasFamily(name)) {
    face.setFamily(name);
  }
  if (font.size != usual.size) face.setPointSize(font.size);
  widget.setFont(face);
}

}  // namespace pluvo::forms_qt
