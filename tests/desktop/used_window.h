#pragma once

#include "base/utf.h"
#include "main_window.h"
#include "storage/files/scratch.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <QtWidgets>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace pluvo::desktop {

/// The program's window, and a user who works it: test bodies are given to use().
class UsedWindow : public testing::Test {
 protected:
  /// In milliseconds, and gone by only where something never happens.
  static constexpr int kPatience = 60'000;

  UsedWindow() {
    QSettings().clear();
    // "Ctrl+V inserts what is selected", and a run without boxes, are ticked where a test wants them.
    std::filesystem::remove_all(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation).toStdString() + "/PLUVO");
    window = std::make_unique<MainWindow>(
        machinePlaces(), Choosers{[this](QWidget*, const QString&) { return QStringList(toOpen); },
                                  [this](QWidget*, const QString& path) -> std::optional<QString> {
                                    proposed = path;
                                    if (saveAsNames.empty()) return std::nullopt;
                                    const QString name = saveAsNames.front();
                                    saveAsNames.pop_front();
                                    return name;
                                  },
                                  [this](QWidget*, const QString& folder) {
                                    foldersShown << folder;
                                    return folderToChoose;
                                  }});
    window->resize(1300, 740);
    window->show();
    answering_.setInterval(5);
    QObject::connect(&answering_, &QTimer::timeout, [this] { answer(); });
    answering_.start();
  }

  /// Runs the script while the dialog is open, then closes the window. Boxes that it did not expect fail it.
  void use(const std::function<void()>& script) {
    QTimer::singleShot(0, window.get(), [this, &script] {
      script();
      EXPECT_TRUE(answers_.empty()) << "boxes that did not come";
      answers_.clear();
      discarding_ = true;
      window->close();
    });
    window->openDialog();
    EXPECT_FALSE(window->isVisible());
  }

  /// What the user does in the next box that waits for an answer.
  void expectBox(std::function<void(QWidget& box)> doing) { answers_.push_back(std::move(doing)); }
  void expectAnswer(QMessageBox::StandardButton button) {
    expectBox([button](QWidget& box) { dynamic_cast<QMessageBox&>(box).button(button)->click(); });
  }
  /// A box of the program with an answer that reads so.
  void expectChoice(const QString& text) {
    expectBox([text](QWidget& box) {
      for (QAbstractButton* button : box.findChildren<QAbstractButton*>()) {
        if (button->text() == text) return button->click();
      }
      ADD_FAILURE() << "no button " << text.toStdString();
      dynamic_cast<QDialog&>(box).reject();
    });
  }
  /// A box that says this, among other things, and is closed.
  void expectSaying(const char* words) {
    expectBox([words](QWidget& box) {
      auto& message = dynamic_cast<QMessageBox&>(box);
      EXPECT_TRUE((message.text() + message.informativeText()).contains(QLatin1String(words)))
          << message.text().toStdString() << message.informativeText().toStdString();
      message.reject();
    });
  }

  template <class Widget>
  Widget& control(const char* name) {
    auto* found = window->findChild<Widget*>(QLatin1String(name));
    if (found == nullptr) throw std::runtime_error(name);
    return *found;
  }
  void type(const char* box, const char* text) {
    auto& edit = control<QWidget>(box);
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, QString::fromUtf8(text));
  }
  void choose(const char* list, const char* row) {
    auto& combo = control<QComboBox>(list);
    combo.setFocus();
    emit combo.activated(combo.findText(QLatin1String(row)));
  }
  void tick(const char* box, bool on = true) {
    auto& tick = control<QCheckBox>(box);
    if (tick.isChecked() != on) tick.click();
  }
  void click(const char* button) {
    control<QPushButton>(button).click();
    settle();
  }
  /// Execute, and what comes of it until the window has nothing under way.
  void execute() { click("cmdExecuteFAR"); }
  void ask(const char* beginning, const char* operation) {
    type("txtBeginText", beginning);
    choose("cboxProcOperation1", operation);
  }
  /// A run over the text files of a folder.
  void askOver(const std::string& folder) {
    type("txtFilePath", folder.c_str());
    tick("chkFTdoc", false);
    tick("chkFTtxt");
  }
  static void press(QWidget& in, const char* button) {
    auto* found = in.findChild<QAbstractButton*>(QLatin1String(button));
    ASSERT_NE(found, nullptr) << button << " in " << in.objectName().toStdString();
    found->click();
  }
  /// The confirmation, while it is shown.
  static QWidget* confirmation() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (top->objectName() == QLatin1String("frmProcessing") && top->isVisible()) return top;
    }
    return nullptr;
  }
  /// The user decides upon the block that awaits it.
  void decide(const char* button) {
    ASSERT_NE(confirmation(), nullptr);
    press(*confirmation(), button);
    settle();
  }
  /// Until no work is under way, and nothing comes of the last.
  void settle() {
    const auto idle = [this] { return !window->work().underWay(); };
    for (int rounds = 0; rounds < 5; ++rounds) {
      ASSERT_TRUE(QTest::qWaitFor(idle, kPatience));
      QCoreApplication::processEvents();
    }
  }

  OpenDocument& open(const std::string& path) {
    openAll({path});
    return *window->current();
  }
  void openAll(const std::vector<std::string>& paths) {
    window->open(paths);
    settle();
  }
  static std::string text(memory::MemoryDocument& document) {
    return base::utf8(document.mainText().text().substring(0, document.mainText().length()));
  }
  static std::string text(const OpenDocument& document) { return text(*document.document()); }
  static std::string textInFile(const std::string& path) {
    return text(*store::Store().open(path)->document());
  }
  /// The user's own change at the beginning, which the window has heard of.
  void change(OpenDocument& document, text::Position until, const char16_t* text) {
    document.document()->mainText().replace({0, until}, text, text::View::results);
    const auto told = [&] {
      const auto& tabs = *window->findChild<QTabBar*>();
      for (int i = 0; i < tabs.count(); ++i) {
        if (tabs.tabText(i) == document.name() + QLatin1Char('*')) return true;
      }
      return false;
    };
    EXPECT_TRUE(QTest::qWaitFor(told, kPatience));
  }
  std::string selected(OpenDocument& document) {
    memory::MemoryDocument& now = *document.document();
    return base::utf8(
        now.stories().story(now.selectedStory()).visibleText(now.selection(), text::View::results));
  }
  /// In the midst of work, too.
  void trigger(const char* text) {
    for (QAction* action : window->findChildren<QAction*>()) {
      if (action->text() != QString::fromUtf8(text)) continue;
      // After slow work some come back a moment later.
      EXPECT_TRUE(QTest::qWaitFor([&] { return action->isEnabled(); }, kPatience)) << text;
      return action->trigger();
    }
    ADD_FAILURE() << "no action " << text;
  }
  void menu(const char* text) {
    trigger(text);
    settle();
  }

  files::Scratch scratch;
  QStringList toOpen;
  QString folderToChoose;
  /// Where the chooser of folders began.
  QStringList foldersShown;
  std::deque<QString> saveAsNames;
  QString proposed;  ///< by the last Save As
  std::unique_ptr<MainWindow> window;

 private:
  void answer() {
    QWidget* const box = QApplication::activeModalWidget();
    if (box == nullptr || box == answered_) return;
    answered_ = box;
    QObject::connect(box, &QObject::destroyed, [this, box] {
      if (answered_ == box) answered_ = nullptr;
    });
    if (!answers_.empty()) {
      const auto doing = answers_.front();
      answers_.pop_front();
      const QPointer<QWidget> there = box;
      doing(*box);
      if (there && !there->isVisible()) answered_ = nullptr;  // the same form may ask again
    } else if (auto* message = qobject_cast<QMessageBox*>(box)) {
      if (!discarding_)
        ADD_FAILURE() << message->text().toStdString() << message->informativeText().toStdString();
      if (QAbstractButton* discard = message->button(QMessageBox::Discard)) {
        discard->click();
      } else {
        message->reject();
      }
    } else {
      ADD_FAILURE() << box->objectName().toStdString();
      static_cast<QDialog*>(box)->reject();
    }
    // The same window may be shown again.
    answered_ = nullptr;
  }

  std::deque<std::function<void(QWidget&)>> answers_;
  QWidget* answered_ = nullptr;
  bool discarding_ = false;
  QTimer answering_;
};

}  // namespace pluvo::desktop
