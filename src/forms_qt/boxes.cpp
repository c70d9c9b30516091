#include "forms_qt/boxes.h"

#include "texts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>

namespace pluvo::forms_qt {

namespace {

QWidget* ownerOf(const BoxHooks& hooks) {
  QWidget* owner = hooks.owner ? hooks.owner() : nullptr;
  // A box stands above the window that waits already.
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  return owner != nullptr ? owner : QApplication::activeWindow();
}

QString titleOf(const std::optional<std::u16string>& title) {
  return title ? qt(*title) : QGuiApplication::applicationDisplayName();
}

void place(const BoxHooks& hooks, QWidget& box) {
  if (!hooks.placing) return;
  box.adjustSize();
  hooks.placing(box);
}

/// A window that is as narrow as a short text would cut a long title.
int widthForTitle(const QWidget& box) {
  const QFontMetrics metrics = box.fontMetrics();
  constexpr int kButtons = 6;  // and an icon, in heights of a line
  return metrics.horizontalAdvance(box.windowTitle()) * 5 / 4 + metrics.height() * kButtons;
}

/// The buttons look like those of forms.
void withoutIcons(QDialog& box) {
  for (QAbstractButton* button : box.findChildren<QAbstractButton*>()) button->setIcon({});
}

/// A text that is higher than the screen scrolls, so that the buttons stay in sight.
void keepOnScreen(QMessageBox& box, QLabel& label) {
  const QSize room = box.screen()->availableGeometry().size();
  const int highest = room.height() * 2 / 3;
  const int widest = room.width() * 2 / 3;
  const int width = std::min(label.sizeHint().width(), widest);
  // A least width stands for the text's own, by which the box breaks lines: only where the text is shorter.
  const int ofTitle = std::min(widthForTitle(box), widest);
  if (width < ofTitle) label.setMinimumWidth(ofTitle);
  label.setWordWrap(true);
  if (label.heightForWidth(width) <= highest) return;
  auto* const scroll = new QScrollArea;
  scroll->setAccessibleName(box.windowTitle());
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  delete box.layout()->replaceWidget(&label, scroll);
  scroll->setWidget(&label);
  label.setMargin(label.fontMetrics().height() / 2);
  label.setAlignment(Qt::AlignTop | Qt::AlignLeft);
  const int beside =
      scroll->verticalScrollBar()->sizeHint().width() + 2 * label.margin() + 2 * scroll->frameWidth();
  scroll->setMinimumSize(width + beside, highest);
}

QMessageBox::StandardButtons standard(forms::Buttons buttons) {
  switch (buttons) {
    case forms::Buttons::yesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case forms::Buttons::yesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case forms::Buttons::ok:
      break;
  }
  return QMessageBox::Ok;
}

forms::BoxAnswer lastOf(forms::Buttons buttons) {
  switch (buttons) {
    case forms::Buttons::yesNo:
      return forms::BoxAnswer::no;
    case forms::Buttons::yesNoCancel:
      return forms::BoxAnswer::cancel;
    case forms::Buttons::ok:
      break;
  }
  return forms::BoxAnswer::ok;
}

}  // namespace

forms::BoxAnswer QtMessageBoxes::show(const std::u16string& text, forms::Buttons buttons,
                                      const std::optional<std::u16string>& title) {
  QMessageBox box(QMessageBox::NoIcon, titleOf(title), QString(), standard(buttons), ownerOf(hooks_));
  box.setTextFormat(Qt::PlainText);
  box.setText(breakable(lines(text)));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  withoutIcons(box);
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label != nullptr) {
    label->setContextMenuPolicy(Qt::NoContextMenu);
    keepOnScreen(box, *label);
  }
  const QShortcut copy(QKeySequence::Copy, &box, [&] {
    const bool marked = label != nullptr && label->hasSelectedText();
    const QString copied = unbroken(marked ? label->selectedText() : box.text());
    QGuiApplication::clipboard()->setText(QString(copied).replace(QChar::ParagraphSeparator, u'\n'));
  });
  place(hooks_, box);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return forms::BoxAnswer::yes;
    case QMessageBox::No:
      return forms::BoxAnswer::no;
    case QMessageBox::Ok:
      return forms::BoxAnswer::ok;
    default:
      return lastOf(buttons);
  }
}

std::u16string QtInputBoxes::ask(const std::u16string& prompt, const std::u16string& title) {
  QInputDialog box(ownerOf(hooks_));
  box.setWindowTitle(qt(title));
  box.setInputMode(QInputDialog::TextInput);
  box.setLabelText(lines(prompt));
  box.findChild<QLabel*>()->setTextFormat(Qt::PlainText);
  box.adjustSize();  // makes the buttons
  withoutIcons(box);
  box.setMinimumWidth(widthForTitle(box));
  place(hooks_, box);
  return box.exec() == QDialog::Accepted ? u16(box.textValue()) : std::u16string();
}

}  // namespace pluvo::forms_qt
