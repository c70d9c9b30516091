#pragma once

#include "forms/form.h"
#include "forms_qt/boxes.h"
#include "forms_qt/forms.h"
#include "forms_qt/machine.h"

#include <QtTest/QtTest>

#include <QtWidgets>
#include <algorithm>
#include <functional>
#include <optional>
#include <string>

namespace pluvo::forms {

/// A widget's text without its key's mark.
inline QString read(QString text) {
  return text.replace(QStringLiteral("&&"), QStringLiteral("\n")).remove(u'&').replace(u'\n', u'&');
}
inline QString withoutMarkup(const QString& html) {
  QTextDocument document;
  document.setHtml(html);
  return document.toPlainText().replace(u'\n', u' ');
}

/// What there must be before a user is.
struct Toolkit {
  Toolkit(int& argc, char** argv) : application(argc, argv) {
    QApplication::setStyle(QStringLiteral("Fusion"));
  }
  QApplication application;
};

/// Does something to the next box, once it is on screen, laid out and has the keyboard, however long that
/// takes.
inline void whenShown(std::function<void(QWidget& box)> doing) {
  QTimer::singleShot(10, QApplication::instance(), [doing = std::move(doing)]() mutable {
    QWidget* const box = QApplication::activeModalWidget();
    if (box == nullptr || !box->isActiveWindow() || !box->windowHandle()->isExposed())
      return whenShown(std::move(doing));
    QTimer::singleShot(0, box, [box, doing = std::move(doing)] { doing(*box); });
  });
}

/// See forms_shown/shown_form.h.
class User {
 public:
  /// Faults that nobody reported are shown in these boxes.
  explicit User(MessageBoxes& faults) : host(faults) {}
  User() : User(boxes) {}

  /// In milliseconds, and gone by only where something never happens.
  static constexpr int kPatience = 60'000;
  static constexpr int kEnter = Qt::Key_Return;
  static constexpr int kTab = Qt::Key_Tab;
  static constexpr int kControlKey = Qt::Key_Control;
  static constexpr int kEscape = Qt::Key_Escape;
  static constexpr int kPageUp = Qt::Key_PageUp;
  static constexpr int kPageDown = Qt::Key_PageDown;

  template <class Widget = QWidget>
  Widget& widget(const Control& control) const {
    return *window()->findChild<Widget*>(QString::fromStdU16String(control.Name()));
  }
  QWidget* window() const { return host.windowOf(*form); }

  void open() {
    form->Visible(true);
    if (!QTest::qWaitForWindowActive(window()->window(), kPatience))
      qFatal("the window did not come to the front");
    settle();
  }
  void focus(const Control& control) {
    widget(control).setFocus();
    settle();
  }
  std::string focused() {
    const QWidget* at = QApplication::focusWidget();
    while (at != nullptr && form->control(at->objectName().toStdU16String()) == nullptr)
      at = at->parentWidget();
    return at == nullptr ? "" : at->objectName().toStdString();
  }
  void type(const std::u16string& text) {
    for (const QChar letter : QString::fromStdU16String(text))
      QTest::sendKeyEvent(QTest::Click, keyboard(), Qt::Key_unknown, letter, Qt::NoModifier);
    settle();
  }
  void markAll() { QTest::keyClick(keyboard(), Qt::Key_A, Qt::ControlModifier); }
  void keyDown(int key, int shift) {
    QTest::keyPress(keyboard(), Qt::Key(key), modifiers(shift));
    settle();
    if (shift != kAlt) return;
    // A button is pressed for a while.
    const auto released = [this] {
      const auto buttons = window()->findChildren<QAbstractButton*>();
      return std::ranges::none_of(buttons, [](const auto* button) { return button->isDown(); });
    };
    if (!QTest::qWaitFor(released, kPatience)) qFatal("a button stays pressed");
  }
  void keyUp(int key, int shift) {
    if (keyboard() != nullptr) QTest::keyRelease(keyboard(), Qt::Key(key), modifiers(shift));
    settle();
  }
  void key(int key, int shift = 0) {
    keyDown(key, shift);
    keyUp(key, shift);
  }
  void click(const Control& control, MouseButton button = kLeft) {
    const QWidget& on = widget(control);
    QWidget* const top = on.window();
    QTest::mouseClick(top->windowHandle(), Qt::MouseButton(button), {},
                      on.mapTo(top, QPoint(8, on.height() / 2)));
    settle();
  }
  void clickRow(const ListBox& list, int row, int shift = 0) {
    auto& shown = widget<QListView>(list);
    QTest::mouseClick(shown.viewport(), Qt::LeftButton, modifiers(shift), place(shown, row));
  }
  void doubleClickRow(const ListBox& list, int row) {
    clickRow(list, row);
    auto& shown = widget<QListView>(list);
    QTest::mouseDClick(shown.viewport(), Qt::LeftButton, {}, place(shown, row));
  }
  void choose(const ComboBox& list, int row) {
    auto& shown = widget<QComboBox>(list);
    shown.setFocus();
    shown.setCurrentIndex(row);
    emit shown.activated(row);
    settle();
  }
  void turnTo(const MultiPage& pages, int page) {
    QTabBar* const tabs = widget<QTabWidget>(pages).tabBar();
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(page).center());
  }
  void closeWindow() { window()->close(); }

  std::string seen(const Control& control) {
    QWidget& shown = widget(control);
    if (!shown.isVisible()) return "-";
    return (shown.isEnabled() ? "" : "off: ") + textOf(shown).toStdString();
  }
  std::u16string tip(const Control& control) {
    const auto* pages = qobject_cast<QTabWidget*>(&widget(control));
    return withoutMarkup(pages != nullptr ? pages->tabToolTip(0) : widget(control).toolTip())
        .toStdU16String();
  }
  std::string title() {
    return window() != nullptr && window()->isVisible() ? window()->windowTitle().toStdString() : "-";
  }

  std::string status() {
    const auto* line = window()->findChild<QLabel*>(QStringLiteral("status"));
    return line != nullptr && line->isVisible() ? line->text().toStdString() : "-";
  }

  void later(std::function<void()> doing) {
    QTimer::singleShot(50, QApplication::instance(), [this, doing = std::move(doing)]() mutable {
      // The window server may take its time to give a box the keyboard.
      const QWidget* box = QApplication::activeModalWidget();
      if (box != nullptr && !box->isActiveWindow()) return later(std::move(doing));
      doing();
    });
  }
  std::string answerBox(std::optional<BoxAnswer> answer) {
    auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
    const QString says = box.windowTitle() + QStringLiteral(": ") + box.text();
    if (answer) {
      box.button(*answer == BoxAnswer::ok    ? QMessageBox::Ok
                 : *answer == BoxAnswer::yes ? QMessageBox::Yes
                 : *answer == BoxAnswer::no  ? QMessageBox::No
                                             : QMessageBox::Cancel)
          ->click();
    } else {
      box.close();
    }
    return says.toStdString();
  }
  void settle() {
    for (int rounds = 0; rounds < 3; ++rounds) QCoreApplication::processEvents();
  }

  Form* form = nullptr;
  forms_qt::QtMessageBoxes boxes;
  forms_qt::QtInputBoxes inputs;
  struct : Yielding {
    void yield() override { QCoreApplication::processEvents(QEventLoop::AllEvents, 20); }
  } yielding;
  forms_qt::QtLauncher launcher;
  forms_qt::QtForms host;

 private:
  QWidget* keyboard() const {
    return QApplication::focusWidget() != nullptr ? QApplication::focusWidget()
                                                  : QApplication::activeWindow();
  }
  /// The same bits, higher up.
  static Qt::KeyboardModifiers modifiers(int shift) {
    return Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(shift) << 25);
  }
  static QPoint place(const QListView& list, int row) {
    return list.visualRect(list.model()->index(row, 0)).center();
  }
  static QString textOf(QWidget& shown) {
    if (auto* line = qobject_cast<QLineEdit*>(&shown)) return line->displayText();
    if (auto* lines = qobject_cast<QPlainTextEdit*>(&shown)) return lines->toPlainText();
    if (auto* label = qobject_cast<QLabel*>(&shown)) {
      if (label->textFormat() == Qt::RichText) return withoutMarkup(label->text());
      return label->buddy() != nullptr ? read(label->text()) : label->text();
    }
    if (auto* button = qobject_cast<QAbstractButton*>(&shown)) {
      const char* const tick = !button->isCheckable() ? "" : button->isChecked() ? "[x] " : "[ ] ";
      return QLatin1String(tick) + read(button->text());
    }
    if (auto* combo = qobject_cast<QComboBox*>(&shown))
      return combo->currentText() + QStringLiteral(" of %1").arg(combo->count());
    if (auto* pages = qobject_cast<QTabWidget*>(&shown)) return read(pages->tabText(pages->currentIndex()));
    auto& list = dynamic_cast<QListView&>(shown);
    QStringList rows;
    for (int row = 0; row < list.model()->rowCount(); ++row)
      rows += (list.selectionModel()->isRowSelected(row) ? QStringLiteral("*") : QString()) +
              list.model()->index(row, 0).data().toString();
    return rows.join(u'|');
  }
};

}  // namespace pluvo::forms
