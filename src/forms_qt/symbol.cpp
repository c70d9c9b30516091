#include "symbol.h"

#include <QPainter>
#include <QPainterPath>
#include <utility>

namespace pluvo::forms_qt {

namespace {

/// Drawn in a square of 16 by 16.
struct Drawing {
  const char16_t* character;
  void (*draw)(QPainter&);
};

void drawLens(QPainter& painter) {
  painter.drawEllipse(QPointF(6.5, 6.5), 4.5, 4.5);
  QPen handle = painter.pen();
  handle.setWidthF(2 * handle.widthF());
  painter.setPen(handle);
  painter.drawLine(QPointF(10.4, 10.4), QPointF(14, 14));
}

void drawPage(QPainter& painter) {
  QPainterPath page(QPointF(9.5, 1.5));
  for (const QPointF corner : {QPointF(3, 1.5), QPointF(3, 14.5), QPointF(13, 14.5), QPointF(13, 5)})
    page.lineTo(corner);
  page.closeSubpath();
  page.moveTo(9.5, 1.5);
  page.lineTo(9.5, 5);
  page.lineTo(13, 5);
  painter.drawPath(page);
  for (const double line : {8.0, 10.5}) painter.drawLine(QPointF(5.5, line), QPointF(10.5, line));
}

/// The usual symbols, drawn in the colour and weight of the text beside them. A face may have them in colours
/// of its own, or not at all.
constexpr Drawing kDrawings[] = {{u"\U0001F50D", drawLens}, {u"\U0001F4C4", drawPage}};

}  // namespace

Symbol::Symbol(QString character, QWidget* parent) : QWidget(parent), character_(std::move(character)) {}

QSize Symbol::sizeHint() const {
  const int side = fontMetrics().height() * 2;
  return {side, side};
}

void Symbol::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const int side = qMin(width(), height());
  for (const Drawing& drawing : kDrawings) {
    if (QStringView(drawing.character) != character_) continue;
    constexpr double kSquare = 16;
    painter.translate((width() - side) / 2.0, (height() - side) / 2.0);
    painter.scale(side / kSquare, side / kSquare);
    painter.setPen(
        QPen(palette().color(QPalette::WindowText), 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return drawing.draw(painter);
  }
  QFont face = font();
  face.setPixelSize(qMax(1, side * 3 / 4));
  painter.setFont(face);
  painter.drawText(rect(), Qt::AlignCenter, character_);
}

}  // namespace pluvo::forms_qt
