#include "look.h"

#include "texts.h"

#include <QApplication>
#include <QFontDatabase>
#include <algorithm>

namespace pluvo::forms_qt {

namespace {

constexpr int kMiddle = 128;

QColor qt(forms::Color color) {
  constexpr forms::Color kByte = 0xFF;
  constexpr int kGreen = 8;
  constexpr int kBlue = 16;
  return {static_cast<int>(color & kByte), static_cast<int>((color >> kGreen) & kByte),
          static_cast<int>((color >> kBlue) & kByte)};
}

QColor readableOn(const QColor& back) {
  return qGray(back.rgb()) < kMiddle ? QColor(Qt::white) : QColor(Qt::black);
}

/// A pale colour glares among dark ones: there it is a dark one of its hue.
QColor amongOthers(const QColor& back) {
  const QColor window = QGuiApplication::palette().color(QPalette::Window);
  if (qGray(window.rgb()) >= kMiddle || back.lightness() <= kMiddle) return back;
  constexpr float kSaturation = 0.25F;
  constexpr float kLightness = 0.17F;
  return QColor::fromHslF(std::max(back.hslHueF(), 0.0F), std::min(back.hslSaturationF(), kSaturation),
                          kLightness);
}

/// The faces a system may have for one it has not.
struct Stand {
  const char16_t* face;
  const char16_t* in;
};
constexpr Stand kStands[] = {{u"Bookman Old Style", u"URW Bookman"},
                             {u"Bookman Old Style", u"Bookman"},
                             {u"Impact", u"Anton"},
                             {u"Impact", u"League Gothic"},
                             {u"Tahoma", u"Verdana"}};

QString familyFor(const QString& name) {
  if (QFontDatabase::hasFamily(name)) return name;
  for (const Stand& stand : kStands) {
    QString other = QStringView(stand.in).toString();
    if (QStringView(stand.face) == name && QFontDatabase::hasFamily(other)) return other;
  }
  return {};
}

bool hasColorOfItsOwn(const forms::Control& control) {
  return control.BackStyle() == forms::BackStyle::opaque && control.BackColor() != forms::kWhite;
}

/// Between text and background, and readable all the same.
QColor faded(const QPalette& palette) {
  const QColor text = palette.color(QPalette::WindowText);
  const QColor back = palette.color(QPalette::Window);
  const auto mixed = [](int one, int other) { return (one * 3 + other * 2) / 5; };
  return {mixed(text.red(), back.red()), mixed(text.green(), back.green()), mixed(text.blue(), back.blue())};
}

}  // namespace

void dressBox(QWidget& box, const forms::Control& control) {
  QPalette palette;
  if (hasColorOfItsOwn(control)) {
    const QColor back = amongOthers(qt(control.BackColor()));
    palette.setColor(QPalette::Base, back);
    palette.setColor(QPalette::Text, readableOn(back));
  } else if (control.BackStyle() == forms::BackStyle::transparent) {
    const QPalette usual = QGuiApplication::palette();
    palette.setColor(QPalette::Base, usual.color(QPalette::Window));
    if (control.Enabled()) palette.setColor(QPalette::Text, faded(usual));
  }
  box.setPalette(palette);
}

void dressLabel(QWidget& label, const forms::Control& control) {
  const bool own = hasColorOfItsOwn(control);
  QPalette palette;
  if (own) {
    const QColor back = amongOthers(qt(control.BackColor()));
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::WindowText, readableOn(back));
  }
  label.setPalette(palette);
  label.setAutoFillBackground(own);
}

void setFont(QWidget& widget, const forms::Font& font) {
  const forms::Font usual;
  QFont face = QApplication::font();
  const QString family = familyFor(forms_qt::qt(font.name));
  if (!family.isEmpty()) face.setFamily(family);
  // A heading stands out all the same.
  if (family.isEmpty() && font.name != usual.name && !font.name.empty()) face.setBold(true);
  if (font.size != usual.size) face.setPointSize(font.size);
  widget.setFont(face);
}

}  // namespace pluvo::forms_qt
