#include "shown_form.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListView>

namespace pluvo::forms_qt {
namespace {

using forms::ComboBox;
using forms::ListBox;

class Lists : public ShownForm {
 protected:
  Lists() {
    for (const char16_t* row : {u"None", u"Insert", u"Replace"})
      list.AddItem(row, u"code of " + std::u16string(row));
    list.Text(u"None");
    list.BeforeUpdate.handledBy([this](bool& refused) {
      ++asked;
      refused = !list.Value();
      if (refused) boxes.show(u"no", forms::Buttons::ok, u"title");
    });
  }
  QComboBox& shown() { return widget<QComboBox>(list); }
  QLineEdit& edit() { return *shown().lineEdit(); }
  /// The user types this in the place of what is there.
  void retype(const char* text) {
    shown().setFocus();
    edit().selectAll();
    QTest::keyClicks(&shown(), QString::fromUtf8(text));
  }

  ComboBox& list = with<ComboBox>(u"list");
  forms::TextBox& next = with<forms::TextBox>(u"next");
  forms::CommandButton& button = with<forms::CommandButton>(u"button", u"Press");
  int asked = 0;
};

TEST_F(Lists, AnEditIsAskedAboutOnceAndStandsInTheRowsOwnLetters) {
  show();
  EXPECT_EQ(edit().text(), u"None");
  retype("insert");
  EXPECT_EQ(asked, 0);
  key(shown(), Qt::Key_Tab);
  EXPECT_EQ(list.Value(), u"code of Insert");
  EXPECT_EQ(edit().text(), u"Insert");
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(widget(next).hasFocus());
  shown().setFocus();
  key(shown(), Qt::Key_Down);
  EXPECT_EQ(list.Text(), u"Replace");
  EXPECT_EQ(asked, 2);
  list.Value(u"code of None");
  EXPECT_EQ(edit().text(), u"None");
}

TEST_F(Lists, ARefusedEditKeepsTheFocusHoweverItIsLeft) {
  int presses = 0;
  button.Click.handledBy([&] { ++presses; });
  show();
  const std::vector<std::function<void()>> ways = {
      [&] { key(shown(), Qt::Key_Tab); },
      [&] { key(shown(), Qt::Key_Return); },
      [&] { QTest::mouseClick(&widget(button), Qt::LeftButton); },
      [&] { widget(next).setFocus(Qt::MouseFocusReason); },
  };
  for (const auto& leave : ways) {
    boxes.shown.clear();
    retype("nonsense");
    leave();
    settle();
    EXPECT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(list.Text(), u"None");
    EXPECT_EQ(edit().text(), u"None");
    EXPECT_TRUE(shown().hasFocus());
  }
  EXPECT_EQ(presses, 0);
}

TEST_F(Lists, WhatChangeMakesOfATextIsShown) {
  list.AddItem(u"(More...)", u"more");
  list.Change.handledBy([this] {
    if (list.Text() == u"(More...)") list.Value(u"code of Replace");
  });
  show();
  shown().setCurrentIndex(3);
  emit shown().activated(3);
  EXPECT_EQ(list.Text(), u"Replace");
  EXPECT_EQ(edit().text(), u"Replace");
}

TEST_F(Lists, TheWheelOverAListThatHasNoFocusChangesNothing) {
  show();
  widget(next).setFocus();
  QWheelEvent wheel({5, 5}, shown().mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
  QApplication::sendEvent(&shown(), &wheel);
  EXPECT_EQ(list.Text(), u"None");
}

class Rows : public ShownForm {
 protected:
  Rows() {
    rows.MultiSelect(true);
    rows.items({u"a", u"b", u"c", u"d"});
  }
  QListView& shown() { return widget<QListView>(rows); }
  std::string selected() const {
    std::string texts;
    for (std::size_t row = 0; row < rows.ListCount(); ++row) {
      if (rows.Selected(row)) texts += static_cast<char>(rows.List(row).front());
    }
    return texts;
  }
  void click(int row, Qt::KeyboardModifiers modifiers = {}) {
    const QPoint place = shown().visualRect(shown().model()->index(row, 0)).center();
    QTest::mouseClick(shown().viewport(), Qt::LeftButton, modifiers, place);
  }
  ListBox& rows = with<ListBox>(u"rows");
};

TEST_F(Rows, SelectionGoesBothWays) {
  show();
  click(1);
  click(3, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "bcd");
  click(2, Qt::ControlModifier);
  EXPECT_EQ(selected(), "bd");
  rows.retain([](bool isSelected) { return isSelected; });
  EXPECT_EQ(shown().model()->rowCount(), 2);
  EXPECT_TRUE(shown().selectionModel()->isRowSelected(0));
  EXPECT_EQ(selected(), "bd");
  key(shown(), Qt::Key_A, Qt::ControlModifier);
  rows.items({u"x", u"y"});
  EXPECT_FALSE(shown().selectionModel()->hasSelection());
}

TEST_F(Rows, DoubleClickAndEnterOpenARow) {
  std::vector<std::size_t> opened;
  rows.DblClick.handledBy([&](std::size_t row) {
    opened.push_back(row);
    rows.items({u"inside", u"b"});
  });
  show();
  click(1);
  key(shown(), Qt::Key_Return);
  EXPECT_EQ(shown().currentIndex().row(), 1) << "the row of that text is where the user was";
  const QPoint place = shown().visualRect(shown().model()->index(0, 0)).center();
  QTest::mouseClick(shown().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(shown().viewport(), Qt::LeftButton, {}, place);
  EXPECT_THAT(opened, testing::ElementsAre(1U, 0U));
}

TEST_F(Rows, AHundredThousandRowsAreSelectedAtOnce) {
  std::vector<std::u16string> many(100'000, u"/a/path/of/a/document.docx");
  rows.items(std::move(many));
  show();
  QElapsedTimer timer;
  timer.start();
  key(shown(), Qt::Key_A, Qt::ControlModifier);
  EXPECT_LT(timer.elapsed(), 2000);
  EXPECT_TRUE(rows.Selected(99'999));
}

}  // namespace
}  // namespace pluvo::forms_qt
