#include "forms/multi_page.h"
#include "shown_form.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

namespace pluvo::forms_qt {
namespace {

using forms::CheckBox;
using forms::CommandButton;
using forms::Label;

class Forms : public ShownForm {};

TEST_F(Forms, AModalFormIsWaitedForAndBlocksAnotherUnlessToldNotTo) {
  for (const bool blocks : {true, false}) {
    QtForms forms(boxes);
    if (!blocks) forms.leavesOthersUsable(u"form");
    TestForm waited(forms);
    CommandButton done(u"done", u"&Done");
    done.Click.handledBy([&] { waited.Hide(); });
    waited.add(done);
    QPushButton elsewhere;
    elsewhere.show();
    int pressedElsewhere = 0;
    QObject::connect(&elsewhere, &QPushButton::clicked, [&] { ++pressedElsewhere; });
    bool shown = false;
    QTimer::singleShot(50, &elsewhere, [&] {
      shown = waited.Visible() && forms.windowOf(waited)->isVisible();
      EXPECT_EQ(forms.windowOf(waited)->isModal(), blocks);
      QTest::mouseClick(elsewhere.windowHandle(), Qt::LeftButton, {}, elsewhere.rect().center());
      QTest::mouseClick(forms.windowOf(waited)->findChild<QPushButton*>(), Qt::LeftButton);
    });
    waited.ShowModal();
    EXPECT_TRUE(shown);
    EXPECT_FALSE(waited.Visible());
    EXPECT_FALSE(forms.windowOf(waited)->isVisible());
    EXPECT_EQ(pressedElsewhere, blocks ? 0 : 1);
  }
}

TEST_F(Forms, ClosingIsTheUsersUnlessTheProgramSaysNo) {
  int closed = 0;
  form->Closed.handledBy([&] { ++closed; });
  with<CommandButton>(u"button", u"Button");
  bool admitted = false;
  host.admits = [&](const forms::Form&, const forms::Control*) { return admitted; };
  show();
  key(*window(), Qt::Key_Escape);
  window()->close();
  EXPECT_TRUE(form->Visible());
  admitted = true;
  key(*window(), Qt::Key_Escape);
  EXPECT_FALSE(form->Visible());
  show();
  window()->close();
  EXPECT_FALSE(window()->isVisible());
  EXPECT_EQ(closed, 2);
}

TEST_F(Forms, AFormStandsInAContainerOfTheProgram) {
  QWidget container;
  host.standsIn(u"form", container);
  auto& button = with<CommandButton>(u"button", u"Button");
  form->Visible(true);
  EXPECT_TRUE(container.isVisible());
  EXPECT_TRUE(container.isAncestorOf(&widget(button)));
  form->Hide();
  EXPECT_FALSE(container.isVisible());
  form->Visible(true);
  form.reset();
  EXPECT_FALSE(container.isVisible());
}

/// What is read of a widget's text, its key's mark gone.
QString read(QString text) {
  return text.replace(QStringLiteral("&&"), QStringLiteral("\n")).remove(u'&').replace(u'\n', u'&');
}

TEST_F(Forms, CaptionsAndTipsShowLetterForLetterAndHaveKeys) {
  struct Case {
    const char16_t* caption;
    const char16_t* button;
    char16_t key;
  };
  constexpr Case kCases[] = {{u"&Proceed", u"Proceed", u'P'},
                             {u"E&xit Operation", u"Exit Operation", u'X'},
                             {u"Find & Replace", u"Find & Replace", u'F'},
                             {u"Set && Save", u"Set & Save", u'S'},
                             {u"<b>*.doc</b>", u"<b>*.doc</b>", u'B'},
                             {u"Put it", u"Put it", u'I'},
                             {u"xp", u"xp", 0}};
  constexpr const char16_t* kTip =
      u"a <b> && c  (e.g. *.*), and so much more that it is not to be read on one line of any screen at all";
  std::vector<CommandButton*> buttons;
  std::vector<Label*> labels;
  for (const Case& each : kCases) {
    buttons.push_back(&with<CommandButton>(u"b" + std::u16string(each.caption), each.caption));
    labels.push_back(&with<Label>(u"l" + std::u16string(each.caption), each.caption));
  }
  buttons.front()->ControlTipText(kTip);
  show();
  for (std::size_t at = 0; at < buttons.size(); ++at) {
    const QString text = widget<QPushButton>(*buttons[at]).text();
    EXPECT_EQ(read(text), QStringView(kCases[at].button));
    EXPECT_EQ(QKeySequence::mnemonic(text),
              kCases[at].key == 0 ? QKeySequence() : QKeySequence(Qt::ALT | Qt::Key(kCases[at].key)));
    EXPECT_EQ(widget<QLabel>(*labels[at]).text(), QStringView(kCases[at].caption));
    EXPECT_EQ(widget<QLabel>(*labels[at]).textFormat(), Qt::PlainText);
  }
  QTextDocument tip;
  tip.setHtml(widget(*buttons.front()).toolTip());
  EXPECT_EQ(tip.toPlainText().replace(u'\n', u' '), QStringView(kTip));
  EXPECT_EQ(widget(*buttons.front()).accessibleName(), u"Proceed");
  EXPECT_EQ(widget(*buttons.front()).accessibleDescription(), QStringView(kTip));
}

TEST_F(Forms, TicksGoBothWaysAndKeysPress) {
  auto& tick = with<CheckBox>(u"tick", u"&Tick");
  auto& button = with<CommandButton>(u"button", u"&Button");
  auto& link = with<Label>(u"link", u"A <link>");
  link.IsLink(true);
  std::string pressed;
  button.Click.handledBy([&] { pressed += 'b'; });
  link.Click.handledBy([&] { pressed += 'l'; });
  host.helpIs(u"link");
  show();
  key(widget(tick), Qt::Key_Space);
  EXPECT_TRUE(tick.Value());
  tick.Value(false);
  EXPECT_FALSE(widget<QCheckBox>(tick).isChecked());
  QTest::keyClick(window(), Qt::Key_T, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return tick.Value(); }));
  QTest::keyClick(window(), Qt::Key_B, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pressed == "b"; }));
  key(widget(button), Qt::Key_Tab);
  EXPECT_TRUE(widget(link).hasFocus());
  QTest::keyClick(&widget(link), Qt::Key_Return);
  key(widget(tick), Qt::Key_F1);
  EXPECT_EQ(pressed, "bll");
  host.admits = [&](const forms::Form&, const forms::Control* control) { return control != &button; };
  key(widget(button), Qt::Key_Space);
  EXPECT_EQ(pressed, "bll");
}

TEST_F(Forms, PagesAreTabsAndBothSidesTurnThem) {
  auto& pages = with<forms::MultiPage>(u"pages");
  Label names(u"names", u"Names");
  forms::TextBox first(u"first");
  names.Cell({0, 0, 1, 6});
  first.Cell({0, 6, 1, 6});
  forms::TextBox below(u"below");
  below.Cell({1, 0, 1, 6});
  CommandButton second(u"second", u"Second");
  second.Cell({0, 0, 1, 12});
  auto& one = pages.add(u"one", u"Find & Replace", u"Main && Screen");
  one.add(names);
  one.add(first);
  one.add(below);
  pages.add(u"two", u"Two", u"").add(second);
  int turned = 0;
  pages.Change.handledBy([&] { ++turned; });
  form->SetFocus(first);
  show();
  auto& tabs = widget<QTabWidget>(pages);
  EXPECT_EQ(read(tabs.tabText(0)), u"Find & Replace");
  EXPECT_TRUE(widget(first).hasFocus());
  EXPECT_EQ(widget(first).accessibleName(), u"Names");
  EXPECT_EQ(widget<QLabel>(names).buddy(), &widget(first));
  tabs.setFocus();
  QTest::keyClick(window(), Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(widget(first).hasFocus());
  QTest::mouseClick(tabs.tabBar(), Qt::LeftButton, {}, tabs.tabBar()->tabRect(1).center());
  EXPECT_EQ(pages.Value(), 1U);
  EXPECT_TRUE(widget(second).isVisible());
  pages.Value(0);
  EXPECT_EQ(tabs.currentIndex(), 0);
  key(widget(first), Qt::Key_PageUp, Qt::ControlModifier);
  EXPECT_EQ(pages.Value(), 1U);
  EXPECT_EQ(turned, 3);
  form.reset();  // before the controls on it
}

TEST_F(Forms, NoTextIsCutAtTheLeastWidth) {
  auto& long1 = with<Label>(u"label", u"By default all files found are operated on, but they need not be.");
  auto& long2 = with<CommandButton>(u"button", u"Choose Only Selected Files From List");
  auto& long3 = with<CheckBox>(u"tick", u"Start all Finds from Beginning of Document");
  for (forms::Control* control : std::initializer_list<forms::Control*>{&long1, &long2, &long3}) {
    const int column = 4 * (control == &long2) + 8 * (control == &long3);
    control->Cell({0, column, 1, 4});
  }
  show();
  window()->resize(window()->minimumSizeHint());
  settle();
  for (const forms::Control* control : std::initializer_list<forms::Control*>{&long1, &long2, &long3}) {
    const QWidget& shown = widget(*control);
    EXPECT_GE(shown.height(), shown.heightForWidth(shown.width())) << QTest::toString(shown.objectName());
    EXPECT_GE(shown.width(), shown.minimumSizeHint().width());
    EXPECT_GT(shown.height(), 2 * shown.fontMetrics().height() - 2) << "it takes several lines";
  }
  const auto& button = widget<QPushButton>(long2);
  EXPECT_EQ(read(button.text()), u"Choose Only Selected Files From List");
}

TEST_F(Forms, WhatLabelsTellCanBeCopiedFromASmallWindow) {
  with<Label>(u"stats", u"\r\nFound:3\r\n\r\nSkipped:1");
  auto& button = with<CommandButton>(u"button", u"Continue");
  show();
  key(widget(button), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Found:3\n\nSkipped:1");
}

TEST_F(Forms, AFormThatComesBackHasTheFocusWhereItWas) {
  with<CommandButton>(u"perform", u"Perform");
  auto& skip = with<CommandButton>(u"skip", u"Skip");
  int skips = 0;
  skip.Click.handledBy([&] {
    ++skips;
    form->Visible(false);
    form->Visible(true);
  });
  show();
  widget(skip).setFocus();
  for (int blocks = 0; blocks < 3; ++blocks) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  }
  EXPECT_EQ(skips, 3);
}

TEST_F(Forms, ALongPathIsBrokenWhereShownAndWholeWhereCopied) {
  std::u16string path;
  for (int folder = 0; folder < 60; ++folder) path += u"/folder_of_a_name";
  with<Label>(u"path", path);
  auto& button = with<CommandButton>(u"button", u"Select");
  show();
  EXPECT_LT(window()->width(), 800);
  key(widget(button), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringView(path));
}

TEST_F(Forms, AFaultThatReachesTheWidgetsIsTold) {
  auto& button = with<CommandButton>(u"button", u"Button");
  button.Click.handledBy([] { throw errors::Fault(75, u"the log is away"); });
  show();
  key(widget(button), Qt::Key_Space);
  ASSERT_EQ(boxes.shown.size(), 1U);
  EXPECT_EQ(boxes.shown.front().text, u"the log is away");
}

TEST_F(Forms, NothingArrivesWhileTheFormIsHidden) {
  auto& list = with<forms::ComboBox>(u"list");
  list.AddItem(u"row");
  int asked = 0;
  list.BeforeUpdate.handledBy([&](bool&) { ++asked; });
  show();
  type(widget(list), "nonsense");
  form->Hide();
  settle();
  EXPECT_EQ(asked, 0);
  list.Text(u"row");
  show();
  EXPECT_EQ(widget<QComboBox>(list).currentText(), u"row");
}

}  // namespace
}  // namespace pluvo::forms_qt
