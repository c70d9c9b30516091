#include "shown_form.h"

#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>

namespace pluvo::forms_qt {
namespace {

using forms::TextBox;

class TextBoxes : public ShownForm {
 protected:
  TextBox& box(bool lines) {
    auto& box = with<TextBox>(lines ? u"lines" : u"line");
    box.MultiLine(lines);
    return box;
  }
};

TEST_F(TextBoxes, TextGoesBothWaysAndChangeComesWithEachLetter) {
  TextBox& line = box(false);
  TextBox& lines = box(true);
  int changes = 0;
  for (TextBox* each : {&line, &lines}) each->Change.handledBy([&] { ++changes; });
  show();
  type(widget(line), "abc");
  type(widget(lines), "de");
  EXPECT_EQ(line.Text(), u"abc");
  EXPECT_EQ(lines.Text(), u"de");
  EXPECT_EQ(changes, 5);
  line.Text(u"<b>set</b>");
  lines.Text(u"one\rtwo\r\nthree");
  EXPECT_EQ(widget<QLineEdit>(line).text(), u"<b>set</b>");
  EXPECT_EQ(widget<QPlainTextEdit>(lines).toPlainText(), u"one\ntwo\nthree");
  EXPECT_EQ(lines.Text(), u"one\rtwo\r\nthree") << "only the user's edit makes line ends alike";
}

TEST_F(TextBoxes, EveryWayToANewLineIsCrLfAndEveryCharacterSurvives) {
  TextBox& lines = box(true);
  show();
  type(widget(lines), "a");
  key(widget(lines), Qt::Key_Return);
  key(widget(lines), Qt::Key_Return, Qt::ShiftModifier);
  key(widget(lines), Qt::Key_Return, Qt::ControlModifier);
  type(widget(lines), "b");
  EXPECT_EQ(lines.Text(), u"a\r\n\r\n\r\nb");
  // A no-break space, a lone surrogate, a byte order mark and a cell's end.
  const std::u16string odd = u"\uFEFFx\u00A0y\xD800z\x07";
  lines.Text(odd);
  type(widget(lines), "!");
  EXPECT_EQ(lines.Text(), odd + u'!');
}

TEST_F(TextBoxes, SelectionPasteComesAfterTheOrdinaryOne) {
  std::vector<std::u16string> pasted;
  TextBox* line = &box(false);
  TextBox* lines = &box(true);
  for (TextBox* each : {line, lines}) {
    each->KeyUp.handledBy([&pasted, each](std::int16_t code, std::int16_t shift) {
      if (code != forms::kVKey || shift != forms::kControl) return;
      pasted.push_back(each->Text());
      each->Text(u"selection");
    });
  }
  show();
  QGuiApplication::clipboard()->setText(QStringLiteral("clip"));
  for (TextBox* each : {line, lines}) {
    QWidget& shown = widget(*each);
    shown.setFocus();
    key(shown, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(each->Text(), u"selection");
    // The ordinary paste alone.
    key(shown, Qt::Key_A, Qt::ControlModifier);
    key(shown, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(each->Text(), u"clip");
    // Ctrl comes up before V.
    QTest::keyPress(&shown, Qt::Key_V, Qt::ControlModifier);
    QTest::keyRelease(&shown, Qt::Key_Control);
    QTest::keyRelease(&shown, Qt::Key_V);
    EXPECT_EQ(each->Text(), u"selection");
    key(shown, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(each->Text(), u"clipclip") << "what took the paste's place can be undone";
  }
  EXPECT_THAT(pasted,
              testing::Each(testing::ResultOf([](const auto& text) { return text.find(u"clip"); }, 0U)));
  EXPECT_EQ(pasted.size(), 4U);
}

TEST_F(TextBoxes, RightButtonIsTheFormsOnlyWhereItMeansSomething) {
  TextBox& lines = box(true);
  TextBox& line = box(false);
  std::vector<std::int16_t> buttons;
  lines.MouseUp.handledBy([&](std::int16_t button) { buttons.push_back(button); });
  show();
  auto& shown = widget<QPlainTextEdit>(lines);
  QTest::mouseClick(shown.viewport(), Qt::LeftButton);
  QTest::mouseClick(shown.viewport(), Qt::RightButton);
  settle();
  EXPECT_THAT(buttons, testing::ElementsAre(forms::kLeft, forms::kRight));
  QContextMenuEvent menu(QContextMenuEvent::Mouse, {2, 2}, shown.mapToGlobal(QPoint(2, 2)));
  QApplication::sendEvent(shown.viewport(), &menu);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  QContextMenuEvent ordinary(QContextMenuEvent::Mouse, {2, 2}, widget(line).mapToGlobal(QPoint(2, 2)));
  QApplication::sendEvent(&widget(line), &ordinary);
  ASSERT_NE(QApplication::activePopupWidget(), nullptr);
  QApplication::activePopupWidget()->close();
}

TEST_F(TextBoxes, LooksFollowTheControl) {
  TextBox& password = box(false);
  password.PasswordChar(u"*");
  TextBox& display = box(true);
  display.ReadOnly(true);
  show();
  type(widget(password), "secret");
  EXPECT_EQ(widget<QLineEdit>(password).displayText(), u"******");
  EXPECT_EQ(password.Text(), u"secret");
  type(widget(display), "x");
  EXPECT_EQ(display.Text(), u"");
  display.BackColor(0xDFFFFF);
  EXPECT_EQ(widget(display).palette().color(QPalette::Base), QColor(255, 255, 223));
  EXPECT_EQ(widget(display).palette().color(QPalette::Text), QColor(Qt::black));
  display.BackColor(forms::kWhite);
  EXPECT_EQ(widget(display).palette().color(QPalette::Base), QApplication::palette().color(QPalette::Base));
  password.Enabled(false);
  password.BackStyle(forms::BackStyle::transparent);
  EXPECT_FALSE(widget(password).isEnabled());
  EXPECT_EQ(widget(password).palette().color(QPalette::Base),
            QApplication::palette().color(QPalette::Window));
  const QPalette before = QApplication::palette();
  QPalette dark = before;
  dark.setColor(QPalette::Window, Qt::black);
  QApplication::setPalette(dark);
  settle();
  EXPECT_EQ(widget(password).palette().color(QPalette::Base), QColor(Qt::black));
  QApplication::setPalette(before);
  password.Visible(false);
  EXPECT_FALSE(widget(password).isVisible());
}

TEST_F(TextBoxes, EnterPressesTheDefaultButtonButInABoxOfSeveralLines) {
  TextBox& line = box(false);
  TextBox& lines = box(true);
  auto& other = with<forms::CommandButton>(u"other", u"Other");
  auto& execute = with<forms::CommandButton>(u"execute", u"Execute");
  execute.Default(true);
  std::string pressed;
  std::vector<std::int16_t> keys;
  line.KeyPress.handledBy([&](std::int16_t character) { keys.push_back(character); });
  execute.Click.handledBy([&] { pressed += 'e'; });
  other.Click.handledBy([&] { pressed += 'o'; });
  show();
  key(widget(line), Qt::Key_Return);
  EXPECT_EQ(pressed, "e");
  EXPECT_THAT(keys, testing::ElementsAre(forms::kEnterKey));
  key(widget(lines), Qt::Key_Return);
  EXPECT_EQ(pressed, "e");
  key(widget(other), Qt::Key_Return);
  EXPECT_EQ(pressed, "eo");
  execute.Enabled(false);
  key(widget(line), Qt::Key_Return);
  EXPECT_EQ(pressed, "eo");
}

}  // namespace
}  // namespace pluvo::forms_qt
