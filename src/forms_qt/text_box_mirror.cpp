#include "text_box_mirror.h"

#include "look.h"
#include "texts.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QScrollArea>
#include <QTextBlock>
#include <QTextDocument>

namespace pluvo::forms_qt {

namespace {

std::int16_t shiftState(Qt::KeyboardModifiers modifiers) {
  int state = 0;
  if (modifiers.testFlag(Qt::ShiftModifier)) state |= forms::kShift;
  if (modifiers.testFlag(Qt::ControlModifier)) state |= forms::kControl;
  if (modifiers.testFlag(Qt::AltModifier)) state |= forms::kAlt;
  return static_cast<std::int16_t>(state);
}

/// Letters and digits have the same codes here and there; of the others, what texts are edited with.
std::int16_t keyCode(int key) {
  struct Code {
    int key;
    std::int16_t code;
  };
  static constexpr Code kCodes[] = {{Qt::Key_Backspace, 8}, {Qt::Key_Tab, 9},     {Qt::Key_Return, 13},
                                    {Qt::Key_Enter, 13},    {Qt::Key_Escape, 27}, {Qt::Key_PageUp, 33},
                                    {Qt::Key_PageDown, 34}, {Qt::Key_End, 35},    {Qt::Key_Home, 36},
                                    {Qt::Key_Left, 37},     {Qt::Key_Up, 38},     {Qt::Key_Right, 39},
                                    {Qt::Key_Down, 40},     {Qt::Key_Insert, 45}, {Qt::Key_Delete, 46}};
  for (const Code& code : kCodes) {
    if (code.key == key) return code.code;
  }
  constexpr int kMost = 0x5A;  // Z
  return key > 0 && key <= kMost ? static_cast<std::int16_t>(key) : std::int16_t{0};
}

bool isV(const QKeyEvent& key) { return key.key() == Qt::Key_V; }

bool isEnter(const QKeyEvent& key) { return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter; }

std::int16_t mouseButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return forms::kLeft;
    case Qt::RightButton:
      return forms::kRight;
    case Qt::MiddleButton:
      return forms::kMiddle;
    default:
      return 0;
  }
}

/// Shows a character of the form's choice for each that is typed.
class Covering final : public QProxyStyle {
 public:
  Covering(char16_t character, QObject* parent) : character_(character) { setParent(parent); }
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    return hint == SH_LineEdit_PasswordCharacter ? character_
                                                 : QProxyStyle::styleHint(hint, option, widget, returned);
  }

 private:
  char16_t character_;
};

/// As high as a few lines, where it cannot have more.
class LinesEdit final : public QPlainTextEdit {
 public:
  explicit LinesEdit(QWidget* parent) : QPlainTextEdit(parent) {}
  QSize sizeHint() const override {
    return {QPlainTextEdit::sizeHint().width(), height(isReadOnly() ? 6 : 3)};
  }
  QSize minimumSizeHint() const override {
    return {fontMetrics().averageCharWidth() * kLetters, height(isReadOnly() ? 3 : 2)};
  }

 private:
  static constexpr int kLetters = 12;
  int height(int lines) const {
    const QMargins margins = contentsMargins();
    return qRound(fontMetrics().lineSpacing() * lines + 2 * document()->documentMargin()) + margins.top() +
           margins.bottom();
  }
};

/// On a page that scrolls: the box has something to show.
void reveal(QWidget& box) {
  for (QWidget* around = box.parentWidget(); around != nullptr; around = around->parentWidget()) {
    if (auto* page = qobject_cast<QScrollArea*>(around)) return page->ensureWidgetVisible(&box);
  }
}

}  // namespace

void TextBoxMirror::dress() { dressBox(*widget(), box_); }

bool TextBoxMirror::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      return pressed(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
      released(*static_cast<QKeyEvent*>(event));
      return false;
    case QEvent::FocusOut:
      pastes_ = false;
      return false;
    case QEvent::ContextMenu:
      // The right button means something else to this box; the keyboard's menu key does not.
      return box_.MouseUp.isHandled() &&
             static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse;
    case QEvent::MouseButtonRelease: {
      const auto& mouse = *static_cast<QMouseEvent*>(event);
      const std::int16_t button = mouseButton(mouse.button());
      if (button == 0 || !static_cast<QWidget*>(watched)->rect().contains(mouse.position().toPoint()))
        return false;
      // The box is to be done with the button first.
      QMetaObject::invokeMethod(
          this, [this, button] { userActions().does([&] { box_.releaseMouse(button); }); },
          Qt::QueuedConnection);
      return false;
    }
    default:
      return false;
  }
}

bool TextBoxMirror::pressed(QKeyEvent& key) {
  const Qt::KeyboardModifiers modifiers =
      key.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
  pastes_ = key.matches(QKeySequence::Paste) && modifiers == Qt::ControlModifier;
  if (isV(key) && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)) {
    paste();
    return true;
  }
  if (takes(key)) return true;
  const bool enter = isEnter(key) && modifiers == Qt::NoModifier;
  if (enter && key.isAutoRepeat()) return true;
  const QString text = key.text();
  const char16_t character = isEnter(key) ? u'\r' : text.isEmpty() ? u'\0' : text.front().unicode();
  if (character == 0) return false;
  const QPointer<Mirror> self(this);
  userActions().does([&] { box_.pressKey(static_cast<std::int16_t>(character)); });
  // The key may have closed the form, and is then no longer for it.
  if (!self || !userActions().listening()) return true;
  if (enter) key.ignore();  // the form has a use for it
  return enter;
}

void TextBoxMirror::released(const QKeyEvent& key) {
  if (key.isAutoRepeat()) return;
  // With some keyboard layouts the V key has another letter, and Ctrl+V is a paste all the same.
  const bool endsPaste = pastes_ && key.key() != Qt::Key_Control;
  if (endsPaste) pastes_ = false;
  const std::int16_t code = endsPaste ? std::int16_t{forms::kVKey} : keyCode(key.key());
  const std::int16_t shift = endsPaste ? std::int16_t{forms::kControl} : shiftState(key.modifiers());
  if (code != 0) userActions().does([&] { box_.releaseKey(code, shift); });
}

LineMirror::LineMirror(forms::TextBox& box, UserActions& userActions, QWidget& parent)
    : TextBoxMirror(box, userActions), shown_(new QLineEdit(&parent)) {
  shown_->installEventFilter(this);
  connect(shown_, &QLineEdit::textEdited, this,
          [this](const QString& text) { this->userActions().does([&] { box_.type(u16(text)); }); });
  if (!box.PasswordChar().empty()) shown_->setStyle(new Covering(box.PasswordChar().front(), shown_));
  mirrors(*shown_);
}

void LineMirror::refreshKind() {
  const QSignalBlocker quiet(shown_);
  const bool hides = !box_.PasswordChar().empty();
  const QString text = qt(box_.Text());
  if (shown_->text() != text) {
    if (hides) {
      QString before = shown_->text();  // which shares its memory with the box
      base::wipe(const_cast<QChar*>(before.constData()),
                 static_cast<std::size_t>(before.size()) * sizeof(QChar));
      shown_->setText(text);  // no password is to be had back
    } else {
      shown_->selectAll();  // so that the user can undo it
      shown_->insert(text);
    }
  }
  shown_->setReadOnly(box_.ReadOnly());
  shown_->setEchoMode(hides ? QLineEdit::Password : QLineEdit::Normal);
}

LinesMirror::LinesMirror(forms::TextBox& box, UserActions& userActions, QWidget& parent)
    : TextBoxMirror(box, userActions), shown_(new LinesEdit(&parent)) {
  shown_->setTabChangesFocus(true);
  shown_->installEventFilter(this);
  shown_->viewport()->installEventFilter(this);
  connect(shown_, &QPlainTextEdit::textChanged, this,
          [this] { this->userActions().does([this] { box_.type(held()); }); });
  mirrors(*shown_);
}

std::u16string LinesMirror::held() const { return linesBack(shown_->document()->toRawText()); }

bool LinesMirror::takes(const QKeyEvent& key) {
  if (!isEnter(key) || box_.ReadOnly()) return false;
  const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
  if (modifiers != Qt::ControlModifier && modifiers != Qt::ShiftModifier) return false;
  shown_->textCursor().insertBlock();
  shown_->ensureCursorVisible();
  return true;
}

void LinesMirror::refreshKind() {
  const QString text = lines(box_.Text());
  if (lines(held()) != text) {
    const QSignalBlocker quiet(shown_);
    QTextCursor all(shown_->document());  // so that the user can undo it
    all.select(QTextCursor::Document);
    all.insertText(text);
    if (box_.ReadOnly()) all.movePosition(QTextCursor::Start);
    shown_->setTextCursor(all);
    if (box_.ReadOnly() && shown_->isVisible()) reveal(*shown_);
  }
  shown_->setReadOnly(box_.ReadOnly());
  if (box_.ReadOnly())
    shown_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

}  // namespace pluvo::forms_qt
