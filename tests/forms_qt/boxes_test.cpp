#include "forms_qt/boxes.h"

#include "errors/fault.h"
#include "errors/text.h"
#include "forms_qt/machine.h"

#include <QtTest/QtTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <functional>

namespace pluvo::forms_qt {
namespace {

using forms::Answer;
using forms::Buttons;

/// What the user does with the next box.
void then(std::function<void(QWidget&)> does) {
  QTimer::singleShot(50, QApplication::instance(), [does = std::move(does)] {
    QWidget* box = QApplication::activeModalWidget();
    ASSERT_NE(box, nullptr);
    does(*box);
  });
}

std::function<void(QWidget&)> key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  return [=](QWidget& box) { QTest::keyClick(&box, key, modifiers); };
}

TEST(MessageBoxes, AreAnsweredByKeysAndWithoutAButtonAsTheirLast) {
  struct Case {
    Buttons buttons;
    std::function<void(QWidget&)> does;
    Answer answer;
  };
  const auto close = [](QWidget& box) { box.close(); };
  const Case cases[] = {
      {Buttons::ok, key(Qt::Key_Return), Answer::ok},
      {Buttons::ok, close, Answer::ok},
      {Buttons::yesNo, key(Qt::Key_Y, Qt::AltModifier), Answer::yes},
      {Buttons::yesNo, key(Qt::Key_N, Qt::AltModifier), Answer::no},
      {Buttons::yesNo, key(Qt::Key_Escape), Answer::no},
      {Buttons::yesNo, close, Answer::no},
      {Buttons::yesNoCancel, key(Qt::Key_Return), Answer::yes},
      {Buttons::yesNoCancel, key(Qt::Key_Escape), Answer::cancel},
      {Buttons::yesNoCancel, close, Answer::cancel},
  };
  QtMessageBoxes boxes;
  for (const Case& each : cases) {
    then(each.does);
    EXPECT_EQ(boxes.show(u"Perform?", each.buttons, u"Confirm"), each.answer);
  }
}

TEST(MessageBoxes, ShowLetterForLetterAndCanBeCopied) {
  bool placed = false;
  QtMessageBoxes boxes({.owner = {}, .placing = [&](QWidget& box) { placed = box.height() > 0; }});
  then([&](QWidget& box) {
    EXPECT_EQ(box.windowTitle(), u"A & B");
    EXPECT_EQ(static_cast<QMessageBox&>(box).text(), u"<b>R&D</b>\n\nnext");
    EXPECT_EQ(static_cast<QMessageBox&>(box).textFormat(), Qt::PlainText);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    box.close();
  });
  boxes.show(u"<b>R&D</b>\r\n\r\nnext", Buttons::ok, u"A & B");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), u"<b>R&D</b>\n\nnext");
  EXPECT_TRUE(placed);

  std::u16string many;
  for (int i = 0; i < 400; ++i) many += u"a line like others\r\n";
  then([](QWidget& box) {
    EXPECT_LT(box.height(), box.screen()->availableGeometry().height());
    const QWidget* button = box.findChild<QPushButton*>();
    EXPECT_TRUE(box.rect().contains(QRect(button->mapTo(&box, QPoint()), button->size()))) << "in sight";
    EXPECT_GT(box.findChild<QScrollArea*>()->verticalScrollBar()->maximum(), 0);
    box.close();
  });
  boxes.show(many, Buttons::ok, std::nullopt);
}

TEST(InputBoxes, GiveWhatIsTypedAndNothingWhenCancelled) {
  QtInputBoxes boxes;
  then([](QWidget& box) {
    QTest::keyClicks(box.findChild<QLineEdit*>(), QStringLiteral("12"));
    QTest::keyClick(&box, Qt::Key_Return);
  });
  EXPECT_EQ(boxes.ask(u"a number", u"title"), u"12");
  then([](QWidget& box) {
    QTest::keyClicks(box.findChild<QLineEdit*>(), QStringLiteral("12"));
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_EQ(boxes.ask(u"a number", u"title"), u"");
}

TEST(Yielding, DealsWithWhatWaitsButNotWithinItself) {
  QtYielding yielding;
  int done = 0;
  const auto later = [&](auto work) {
    QMetaObject::invokeMethod(QApplication::instance(), work, Qt::QueuedConnection);
  };
  later([&] {
    ++done;
    later([&] { ++done; });
    yielding.yield();
    EXPECT_EQ(done, 1);
  });
  yielding.yield();
  EXPECT_EQ(done, 2);
}

TEST(Launcher, OpensWhatIsGivenToStartAndStartsPrograms) {
  std::vector<std::string> opened;
  bool opens = true;
  QtLauncher launcher([&](const QUrl& address) {
    opened.push_back(address.toString().toStdString());
    return opens;
  });
  launcher.launchHidden(u"start http://www.pluvo.example/");
  launcher.launchHidden(u"cmd.exe /c start /a path/R&D #1.doc");
  EXPECT_THAT(opened, testing::ElementsAre("http://www.pluvo.example/", "file:///a path/R&D %231.doc"));
  launcher.launchHidden(u"true");
  const auto description = [&](const char16_t* line) {
    try {
      launcher.launchHidden(line);
    } catch (const errors::Fault& fault) {
      EXPECT_EQ(fault.number, 53);
      return errors::utf8(fault.description);
    }
    return std::string();
  };
  EXPECT_THAT(description(u"no-such-program-at-all --now"),
              testing::StartsWith("no-such-program-at-all could not"));
  opens = false;
  EXPECT_THAT(description(u"start http://x.example/"),
              testing::StartsWith("http://x.example/ could not be opened"));
}

}  // namespace
}  // namespace pluvo::forms_qt
