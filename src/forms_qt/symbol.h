#pragma once

#include <QString>
#include <QWidget>

namespace pluvo::forms_qt {

/// Draws one character as large as the widget allows, in the colour of texts.
class Symbol final : public QWidget {
 public:
  Symbol(QString character, QWidget* parent);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString character_;
};

}  // namespace pluvo::forms_qt
