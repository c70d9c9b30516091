#include "symbol.h"

#include <QPainter>
#include <utility>

namespace pluvo::forms_qt {

Symbol::Symbol(QString character, QWidget* parent) : QWidget(parent), character_(std::move(character)) {}

QSize Symbol::sizeHint() const {
  const int side = fontMetrics().height() * 2;
  return {side, side};
}

void Symbol::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QFont face = font();
  face.setPixelSize(qMax(1, qMin(width(), height()) * 3 / 4));
  painter.setFont(face);
  painter.drawText(rect(), Qt::AlignCenter, character_);
}

}  // namespace pluvo::forms_qt
