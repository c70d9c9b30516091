#pragma once

#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>  // as which a box gives its buttons

namespace pluvo::desktop {

/// A box whose answer decides the next step.
class Question : public QMessageBox {
 public:
  Question(QWidget* owner, const QString& text, const QString& more)
      : QMessageBox(QMessageBox::Warning, QGuiApplication::applicationDisplayName(), text, NoButton, owner) {
    setInformativeText(more);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }
};

}  // namespace pluvo::desktop
