#include "combo_mirror.h"

#include "look.h"
#include "texts.h"

#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

namespace pluvo::forms_qt {

namespace {

bool leavesForOtherControl(const QEvent& event) {
  const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
  return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
         reason != Qt::MenuBarFocusReason;
}

}  // namespace

ComboMirror::ComboMirror(forms::ComboBox& box, UserActions& userActions, QWidget& parent)
    : Mirror(box, userActions), box_(box), shown_(new QComboBox(&parent)) {
  shown_->setEditable(box.TypingAllowed());
  shown_->setInsertPolicy(QComboBox::NoInsert);
  shown_->setFocusPolicy(Qt::StrongFocus);
  shown_->installEventFilter(this);
  connect(shown_, &QComboBox::activated, this, &ComboMirror::chosen);
  if (QLineEdit* edit = shown_->lineEdit()) connect(edit, &QLineEdit::textEdited, this, &ComboMirror::typed);
  mirrors(*shown_);
}

void ComboMirror::typed(const QString& text) {
  userActions().begun([this] { return commit(); });
  userActions().does([&] { box_.type(u16(text)); });
}

bool ComboMirror::commit() {
  bool stands = true;
  userActions().does([&] {
    // The widget may have completed the typed text, and "insert" is the row "Insert".
    const int row = shown_->findText(shown_->currentText(), Qt::MatchFixedString);
    box_.type(row >= 0 ? box_.List(static_cast<std::size_t>(row), 0) : u16(shown_->currentText()));
    stands = box_.commit();
  });
  refresh();
  if (!stands) {
    shown_->setFocus(Qt::OtherFocusReason);
    if (shown_->lineEdit() != nullptr) shown_->lineEdit()->selectAll();
  }
  return stands;
}

void ComboMirror::chosen(int row) {
  if (row < 0 || static_cast<std::size_t>(row) >= box_.ListCount()) return;
  userActions().begun({});
  userActions().does([&] { box_.choose(static_cast<std::size_t>(row)); });
  refresh();
}

bool ComboMirror::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusOut:
      // Its consequences, a message perhaps, wait until the focus has moved.
      if (leavesForOtherControl(*event)) QTimer::singleShot(0, this, [this] { userActions().endEdit(); });
      return false;
    case QEvent::KeyPress: {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Tab || key == Qt::Key_Backtab) return !userActions().endEdit();
      if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (!userActions().endEdit()) return true;
        event->ignore();
        return true;
      }
      return false;
    }
    case QEvent::Wheel:
      // A page that is scrolled under the pointer must not change the choice.
      if (shown_->hasFocus()) return false;
      event->ignore();
      return true;
    default:
      return false;
  }
}

void ComboMirror::dress() { dressBox(*shown_, box_); }

void ComboMirror::refreshKind() {
  const QSignalBlocker quiet(shown_);
  if (rows_ != box_.rows()) {
    rows_ = box_.rows();
    shown_->clear();
    for (const auto& row : rows_) shown_->addItem(qt(row.text));
  }
  if (QLineEdit* edit = shown_->lineEdit()) edit->setAccessibleName(shown_->accessibleName());
  const QString text = qt(box_.Text());
  const int row = shown_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (shown_->currentIndex() != row) shown_->setCurrentIndex(row);
  if (shown_->isEditable() && shown_->currentText() != text) shown_->setEditText(text);
}

}  // namespace pluvo::forms_qt
