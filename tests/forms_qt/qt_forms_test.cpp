/// What Qt's forms do besides what forms_shown tests of all.
#include "base/utf.h"
#include "errors/fault.h"
#include "forms_shown/shown_form.h"

namespace pluvo::forms {
namespace {

using testing::ElementsAre;

/// A form of what a test puts on it.
class OwnForm : public ShownForm {
 protected:
  OwnForm() { user.form = &own; }

  template <class Kind, class... Arguments>
  Kind& with(Arguments&&... arguments) {
    auto control = std::make_unique<Kind>(std::forward<Arguments>(arguments)...);
    Kind& added = *control;
    controls_.push_back(std::move(control));
    own.add(added);
    return added;
  }

 private:
  // Controls outlive the form here, which must do no harm.
  std::vector<std::unique_ptr<Control>> controls_;

 protected:
  struct Own final : Form {
    using Form::add;
    using Form::Form;
  } own{user.host, u"frmOwn", u"Own"};
};

TEST_F(ShownForm, DoesWhatTheProgramAdmits) {
  bool admitted = false;
  user.host.admits = [&](const Form&, const Control*) { return admitted; };
  form.Help(form.link);
  user.open();
  const auto doesAll = [&] {
    user.click(form.button);
    user.key(Qt::Key_F1);
    user.key(User::kEscape);
    const std::string title = user.title();
    user.open();
    user.closeWindow();
    return title + user.title();
  };
  EXPECT_EQ(doesAll(), "A & BA & B");
  EXPECT_EQ(pressed, "");
  admitted = true;
  EXPECT_EQ(doesAll(), "--");
  EXPECT_EQ(pressed, "bl");
}

TEST_F(ShownForm, StandsInAContainerOfTheProgram) {
  QWidget container;
  user.host.standsIn(u"frmSample", container);
  form.Visible(true);
  EXPECT_TRUE(container.isVisible());
  EXPECT_TRUE(container.isAncestorOf(&user.widget(form.button)));
  form.Hide();
  EXPECT_FALSE(container.isVisible());
}

TEST_F(ShownForm, HasTheFocusWhereItWasWhenItComesBack) {
  form.button.Click.handledBy([&] {
    form.Visible(false);
    form.Visible(true);
  });
  user.open();
  EXPECT_FALSE(user.window()->windowFlags().testFlag(Qt::WindowMaximizeButtonHint)) << "a dialog";
  user.focus(form.button);
  for (int blocks = 0; blocks < 3; ++blocks) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(user.window(), User::kPatience));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  }
  EXPECT_EQ(pressed, "bbb");
}

TEST_F(OwnForm, GivesEveryControlAKeyThatNoOtherHas) {
  constexpr struct {
    const char16_t* caption;
    const char16_t* read;
    int key;
  } kCases[] = {{u"&Proceed", u"Proceed", 'P'},
                {u"E&xit Operation", u"Exit Operation", 'X'},
                {u"Find & Replace", u"Find & Replace", 'F'},
                {u"Set && Save", u"Set & Save", 'S'},
                {u"<b>*.doc</b>", u"<b>*.doc</b>", 'B'},
                {u"Put it", u"Put it", 'I'},
                {u"xp", u"xp", 0}};
  std::vector<const CommandButton*> buttons;
  for (const auto& each : kCases) buttons.push_back(&with<CommandButton>(each.caption, each.caption));
  user.open();
  for (std::size_t at = 0; at < buttons.size(); ++at) {
    const auto& shown = user.widget<QPushButton>(*buttons[at]);
    EXPECT_EQ(read(shown.text()), QStringView(kCases[at].read));
    EXPECT_EQ(shown.accessibleName(), QStringView(kCases[at].read));
    EXPECT_EQ(QKeySequence::mnemonic(shown.text()),
              kCases[at].key == 0 ? QKeySequence() : QKeySequence(Qt::ALT | Qt::Key(kCases[at].key)));
  }
}

TEST_F(OwnForm, HasLabelsNameTheBoxRightOfThemOrBelow) {
  auto& names = with<Label>(u"names", u"Names");
  auto& right = with<TextBox>(u"right");
  auto& below = with<TextBox>(u"below");
  auto& heading = with<Label>(u"heading", u"Heading");
  auto& under = with<TextBox>(u"under");
  names.Cell({0, 0, 1, 6});
  right.Cell({0, 6, 1, 6});
  below.Cell({1, 0, 1, 6});
  heading.Cell({2, 0, 1, 6});
  under.Cell({3, 0, 1, 6});
  own.SetFocus(below);
  user.open();
  EXPECT_EQ(user.focused(), "below");
  EXPECT_EQ(user.widget(right).accessibleName(), u"Names");
  EXPECT_EQ(user.widget(below).accessibleName(), u"below");
  EXPECT_EQ(user.widget(under).accessibleName(), u"Heading");
  user.key('N', kAlt);
  EXPECT_EQ(user.focused(), "right");
}

TEST_F(OwnForm, CutsNoTextAtTheLeastWidth) {
  const Control* const all[] = {
      &with<Label>(u"label", u"By default all files found are operated on, but they need not be."),
      &with<CommandButton>(u"button", u"Choose Only Selected Files From List"),
      &with<CheckBox>(u"tick", u"Start all Finds from Beginning of Document")};
  int column = 0;
  for (Control* control : own.controls()) control->Cell({0, std::exchange(column, column + 4), 1, 4});
  user.open();
  user.window()->resize(user.window()->minimumSizeHint());
  user.settle();
  for (const Control* control : all) {
    const QWidget& shown = user.widget(*control);
    EXPECT_GE(shown.height(), shown.heightForWidth(shown.width())) << QTest::toString(shown.objectName());
    EXPECT_GE(shown.width(), shown.minimumSizeHint().width());
    EXPECT_GT(shown.height(), 2 * shown.fontMetrics().height() - 2) << "it takes several lines";
  }
}

/// Counts how often check boxes are measured.
class MeasuringStyle final : public QProxyStyle {
 public:
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override {
    if (type == CT_CheckBox) ++measured;
    return QProxyStyle::sizeFromContents(type, option, size, widget);
  }
  mutable int measured = 0;
};

TEST_F(OwnForm, MeasuresNothingTwiceForALabelThatSaysSomethingElse) {
  MeasuringStyle style;
  auto& label = with<Label>(u"lblTold", u"short");
  for (char16_t letter = u'a'; letter < u'u'; ++letter)
    with<CheckBox>(std::u16string(u"chk") + letter, u"A caption of some words");
  user.open();
  QWidget& window = *user.window();
  for (auto* box : window.findChildren<QCheckBox*>()) box->setStyle(&style);
  window.setUpdatesEnabled(false);
  QCoreApplication::processEvents();
  style.measured = 0;
  label.Caption(
      u"a text that is longer than the first, so that it takes several lines where it stands, and all "
      u"that is below it moves down");
  QCoreApplication::processEvents();
  EXPECT_LE(style.measured, 2 * 20) << "to measure a box asks the style twice";
  for (auto* box : window.findChildren<QCheckBox*>()) box->setStyle(nullptr);
}

TEST_F(OwnForm, CopiesWhatLabelsTellWithPathsWholeThatAreBrokenWhereShown) {
  QString path;
  for (int word = 0; word < 60; ++word)
    path += QLatin1String(word % 20 == 0 ? "/" : "_") + QStringLiteral("of_a_folder");
  with<Label>(u"stats", u"\r\nFound:3\r\n\r\nSkipped:1");
  const auto& label = with<Label>(u"path", path.toStdU16String());
  with<CommandButton>(u"button", u"Continue");
  user.open();
  EXPECT_LT(user.window()->width(), 800);
  EXPECT_GT(user.widget(label).height(), 5 * user.widget(label).fontMetrics().height());
  user.key('C', kControl);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("Found:3\n\nSkipped:1\n") + path);
}

TEST_F(ShownForm, PutsWhatAHandlerSetsInThePlaceOfThePaste) {
  QGuiApplication::clipboard()->setText(QStringLiteral("clip"));
  std::vector<std::u16string> pasted;
  user.open();
  for (TextBox* box : {&form.line, &form.lines}) {
    box->KeyUp.handledBy([&](std::int16_t code, std::int16_t shift) {
      if (code != kVKey || shift != kControl) return;
      pasted.push_back(box->Text());
      box->Text(u"selection");
    });
    user.focus(*box);
    user.key('V', kControl);
    EXPECT_EQ(box->Text(), u"selection");
    user.key('A', kControl);
    user.key('V', kControl | kShift);
    EXPECT_EQ(box->Text(), u"clip") << "the ordinary paste alone";
    user.key('V', kControl);
    user.key('Z', kControl);
    EXPECT_EQ(box->Text(), u"clipclip") << "what took the paste's place can be undone";
  }
  EXPECT_THAT(pasted, ElementsAre(u"clip", u"clipclip", u"clip", u"clipclip"));
}

TEST_F(ShownForm, HasNoMenuUnderTheMouseWhereTheRightButtonMeansSomething) {
  form.lines.MouseUp.handledBy([](std::int16_t) {});
  user.open();
  for (const TextBox* box : {&form.lines, &form.line}) {
    auto* const area = qobject_cast<QPlainTextEdit*>(&user.widget(*box));
    QWidget& on = area != nullptr ? *area->viewport() : user.widget(*box);
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {2, 2}, on.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&on, &menu);
    QWidget* const shown = QApplication::activePopupWidget();
    EXPECT_EQ(shown != nullptr, box == &form.line);
    if (shown != nullptr) shown->close();
  }
}

TEST_F(ShownForm, HasTheDesktopsColoursUnlessAControlHasItsOwn) {
  user.open();
  const QPalette before = QApplication::palette();
  const auto colour = [&](QPalette::ColorRole role) { return user.widget(form.line).palette().color(role); };
  EXPECT_EQ(colour(QPalette::Base), before.color(QPalette::Base));
  form.line.BackColor(0xDFFFFF);
  EXPECT_EQ(colour(QPalette::Base), QColor(255, 255, 223));
  EXPECT_EQ(colour(QPalette::Text), QColor(Qt::black));
  QPalette dark = before;
  dark.setColor(QPalette::Window, Qt::black);
  QApplication::setPalette(dark);
  user.settle();
  EXPECT_LT(colour(QPalette::Base).lightness(), 60) << "a dark one of its hue";
  EXPECT_EQ(colour(QPalette::Text), QColor(Qt::white));
  form.line.BackStyle(BackStyle::transparent);
  EXPECT_EQ(colour(QPalette::Base), QColor(Qt::black));
  QApplication::setPalette(before);
  user.settle();
  EXPECT_EQ(colour(QPalette::Base), before.color(QPalette::Window));
}

TEST_F(ShownForm, ChangesNothingByTheWheelOverAListWithoutTheFocus) {
  user.open();
  user.focus(form.line);
  auto& combo = user.widget<QComboBox>(form.combo);
  QWheelEvent wheel({5, 5}, combo.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
  QApplication::sendEvent(&combo, &wheel);
  EXPECT_EQ(form.combo.Text(), u"");
}

TEST_F(ShownForm, KeepsTheRowWhereTheUserWasAndSelectsManyAtOnce) {
  form.list.DblClick.handledBy([&](std::size_t) { form.list.items({u"inside", u"b"}); });
  user.open();
  user.clickRow(form.list, 1);
  user.focus(form.list);
  user.key(User::kEnter);
  EXPECT_EQ(user.widget<QListView>(form.list).currentIndex().row(), 1) << "the row of that text";
  form.list.items(std::vector<std::u16string>(100'000, u"/a/path/of/a/document.docx"));
  user.settle();
  user.key('A', kControl);
  EXPECT_TRUE(form.list.Selected(99'999));
}

TEST(QtMessageBoxes, ShowLetterForLetterAndCanBeCopied) {
  bool placed = false;
  forms_qt::QtMessageBoxes boxes({.owner = {}, .placing = [&](QWidget& box) { placed = box.height() > 0; }});
  whenShown([](QWidget& box) {
    EXPECT_EQ(static_cast<QMessageBox&>(box).text(), u"<b>R&D</b>\n\nnext");
    EXPECT_EQ(static_cast<QMessageBox&>(box).textFormat(), Qt::PlainText);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_Return);
  });
  EXPECT_EQ(boxes.show(u"<b>R&D</b>\r\n\r\nnext", Buttons::yesNoCancel, u"A & B"), BoxAnswer::yes);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), u"<b>R&D</b>\n\nnext");
  EXPECT_TRUE(placed);

  std::u16string many;
  for (int i = 0; i < 400; ++i) many += u"a line like others\r\n";
  whenShown([](QWidget& box) {
    EXPECT_LT(box.height(), box.screen()->availableGeometry().height());
    const QWidget* button = box.findChild<QPushButton*>();
    EXPECT_TRUE(box.rect().contains(QRect(button->mapTo(&box, QPoint()), button->size()))) << "in sight";
    const auto* const scroll = box.findChild<QScrollArea*>();
    EXPECT_TRUE(scroll != nullptr && scroll->verticalScrollBar()->maximum() > 0);
    QTest::keyClick(&box, Qt::Key_Escape);
  });
  EXPECT_EQ(boxes.show(many, Buttons::yesNo, std::nullopt), BoxAnswer::no);
}

TEST(QtBoxes, AreAsWideAsTheirTitlesAndHaveNoIcons) {
  const auto look = [] {
    whenShown([](QWidget& box) {
      EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()));
      for (const QAbstractButton* button : box.findChildren<QAbstractButton*>())
        EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
      for (const QLabel* text : box.findChildren<QLabel*>())
        EXPECT_TRUE(text->wordWrap() || text->width() >= text->fontMetrics().size(0, text->text()).width());
      QTest::keyClick(&box, Qt::Key_Escape);
    });
  };
  look();
  forms_qt::QtMessageBoxes().show(u"?", Buttons::yesNo, u"Right-Click Paste Selection Operation, and on");
  look();
  forms_qt::QtMessageBoxes().show(u"a line that is longer than the title is, and goes on\r\n\r\nand another",
                                  Buttons::ok, u"Title");
  look();
  forms_qt::QtInputBoxes().ask(u"?", u"Right-Click Paste Selection Operation, and on and on");
}

TEST(QtLauncher, OpensPagesAndStartsNothing) {
  std::vector<std::string> opened;
  forms_qt::QtLauncher launcher([&](const QUrl& address) {
    opened.push_back(address.toString().toStdString());
    return address.host() != QStringLiteral("x.example");
  });
  launcher.launchHidden(u"start http://www.pluvo.example/");
  launcher.launchHidden(u"cmd.exe /c start https://www.pluvo.example/");
  for (const char16_t* other : {u"true", u"start ./true", u"start file:///bin/true"})
    EXPECT_THROW(launcher.launchHidden(other), errors::Fault) << base::utf8(other);
  EXPECT_THAT(opened, ElementsAre("http://www.pluvo.example/", "https://www.pluvo.example/"));
  try {
    launcher.launchHidden(u"start http://x.example/");
    FAIL() << "it cannot be opened";
  } catch (const errors::Fault& fault) {
    EXPECT_EQ(fault.number, 53);
    EXPECT_TRUE(fault.description.starts_with(u"http://x.example/ could not be opened"));
  }
}

}  // namespace
}  // namespace pluvo::forms
