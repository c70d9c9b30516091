#include "view/document_view.h"

#include "block_layout.h"
#include "documents/support/notation.h"
#include "shown_text.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <QAccessible>
#include <memory>
#include <string>
#include <string_view>

namespace pluvo::view {
namespace {

TEST(ShownText, KnowsWhichCharacterStandsWhere) {
  notation::Sample sample("a<h:hid>b{code|re}c¶");
  const ShownText results(sample.model(), {0, sample.model().length()}, text::View::results);
  EXPECT_EQ(results.text(), QStringLiteral("abrec"));
  EXPECT_EQ(results.position(1), 4);
  EXPECT_EQ(results.shown(2), 1) << "hidden: the next that shows";
  EXPECT_EQ(results.position(5), sample.model().length() - 1) << "before the mark";
  const ShownText codes(sample.model(), {0, sample.model().length()}, text::View::codes);
  EXPECT_EQ(codes.text(), QStringLiteral("ab{code}c"));
  for (int place = 0; place <= codes.text().size(); ++place)
    EXPECT_EQ(codes.shown(codes.position(place)), place);
}

TEST(CopiedText, IsAsOtherProgramsTakeIt) {
  notation::Sample sample("one¶⟦a¦b¦‖c¦d¦‖⟧two<h: hidden>\u000Bthree¶");
  EXPECT_EQ(copiedText(sample.model(), {0, sample.model().length()}, text::View::results),
            QStringLiteral("one\na\tb\nc\td\ntwo\nthree\n"));
}

/// A view on a document in a window, observed as the program does.
struct Shown : memory::DocumentObserver {
  explicit Shown(std::string_view notation) : sample(notation) {
    view = std::make_unique<DocumentView>(sample.document, text::RunMap<formats::Appearance>());
    sample.document->observer(this);
    view->resize(420, 300);
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get()));
    view->setFocus();
  }
  ~Shown() override { sample.document->observer(nullptr); }
  void replaced(Span span, Position newLength) override { view->textReplaced(span, newLength); }
  void highlighted(Span span) override { view->highlightChanged(span); }
  void selected(Span span) override { view->selectionChanged(span); }
  void viewChanged() override { view->viewChanged(); }

  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(view.get(), key, modifiers);
  }
  Span selection() { return sample.document->selection(); }
  std::string selected() {
    const std::u16string text = sample.model().visibleText(selection(), sample.document->view());
    return QString::fromStdU16String(text).toStdString();
  }

  notation::Sample sample;
  std::unique_ptr<DocumentView> view;
};

TEST(DocumentView, MovesAndSelectsByKey) {
  struct Step {
    Qt::Key key;
    Qt::KeyboardModifiers with;
    Span selection;
  };
  const Qt::KeyboardModifiers none, shift = Qt::ShiftModifier, control = Qt::ControlModifier;
  const struct {
    std::string_view notation;
    std::vector<Step> steps;
  } cases[] = {
      {"one two¶three¶",
       {{Qt::Key_Right, none, {1, 1}},
        {Qt::Key_Right, control, {4, 4}},
        {Qt::Key_End, shift, {4, 7}},
        {Qt::Key_Right, shift, {4, 8}},  // over the paragraph's mark
        {Qt::Key_Left, none, {4, 4}},    // a selection collapses
        {Qt::Key_Down, none, {12, 12}},
        {Qt::Key_Home, shift, {8, 12}},
        {Qt::Key_Home, control, {0, 0}},
        {Qt::Key_End, control, {13, 13}},
        {Qt::Key_Right, none, {13, 13}},
        {Qt::Key_A, control, {0, 14}}}},
      {"a😀b¶",
       {{Qt::Key_Right, none, {1, 1}}, {Qt::Key_Right, shift, {1, 3}}, {Qt::Key_Left, shift, {1, 1}}}},
      {"e\u0301x¶", {{Qt::Key_Right, none, {2, 2}}, {Qt::Key_Left, none, {0, 0}}}},
      {"a<h:hidden>b¶", {{Qt::Key_Right, none, {7, 7}}, {Qt::Key_Right, none, {8, 8}}}},
      {"a¶<h:all hidden¶>b¶",
       {{Qt::Key_Right, none, {1, 1}},
        {Qt::Key_Right, none, {13, 13}},
        {Qt::Key_Left, none, {1, 1}},
        {Qt::Key_Down, none, {14, 14}}}},
      {"wwwww¶i¶wwwww¶",  // in the column where the user began
       {{Qt::Key_End, none, {5, 5}}, {Qt::Key_Down, none, {7, 7}}, {Qt::Key_Down, none, {13, 13}}}},
      {"⟦a¦b¦‖c¦d¦‖⟧e¶",
       {{Qt::Key_Right, none, {1, 1}},
        {Qt::Key_Right, none, {2, 2}},
        {Qt::Key_Down, none, {7, 7}},  // the cell below
        {Qt::Key_Up, none, {2, 2}},
        {Qt::Key_End, control, {11, 11}},
        {Qt::Key_Left, none, {10, 10}},
        {Qt::Key_Left, none, {8, 8}},
        {Qt::Key_Left, none, {7, 7}},
        {Qt::Key_Left, none, {6, 6}}}},
      {"שלום¶", {{Qt::Key_Left, none, {1, 1}}, {Qt::Key_Left, none, {2, 2}}, {Qt::Key_Right, none, {1, 1}}}},
  };
  for (const auto& it : cases) {
    Shown shown(it.notation);
    for (std::size_t i = 0; i < it.steps.size(); ++i) {
      const Step& step = it.steps[i];
      shown.key(step.key, step.with);
      EXPECT_EQ(shown.selection().from, step.selection.from) << it.notation << " step " << i;
      EXPECT_EQ(shown.selection().to, step.selection.to) << it.notation << " step " << i;
    }
  }
}

TEST(DocumentView, SelectsByMouseAndCopies) {
  Shown shown("one two three¶four five¶");
  QWidget* const port = shown.view->viewport();
  shown.sample.document->select({4, 7});
  const QPoint word = shown.view->selectionRect().center();
  QTest::mouseClick(port, Qt::LeftButton, {}, QPoint(5, port->height() - 5));
  EXPECT_TRUE(shown.selection().empty());
  QTest::mouseDClick(port, Qt::LeftButton, {}, word);
  EXPECT_EQ(shown.selected(), "two ");
  QTest::mouseClick(port, Qt::LeftButton, {}, word);
  EXPECT_EQ(shown.selected(), "one two three\r") << "three clicks";
  shown.key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("one two three\n"));

  QTest::qWait(QApplication::doubleClickInterval() + 50);
  QTest::mousePress(port, Qt::LeftButton, {}, word);
  QTest::mouseMove(port, word + QPoint(40, 0));
  QMouseEvent move(QEvent::MouseMove, word + QPoint(40, 25), port->mapToGlobal(word + QPoint(40, 25)),
                   Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(port, &move);
  QTest::mouseRelease(port, Qt::LeftButton, {}, word + QPoint(40, 25));
  EXPECT_LT(shown.selection().from, 7);
  EXPECT_GT(shown.selection().to, 14) << "into the next paragraph";
}

std::string longDocument(int paragraphs) {
  std::string notation;
  for (int i = 0; i < paragraphs; ++i)
    notation += "paragraph " + std::to_string(i) +
                " with as many words as it takes to fill more than one line of it¶";
  return notation;
}

TEST(DocumentView, ShowsAFoundBlockWhereverItIs) {
  Shown shown(longDocument(2000));
  const auto find = [&](const char16_t* text) {
    return *shown.sample.model().find({std::make_shared<const std::u16string>(text), {}},
                                      {0, shown.sample.model().length()}, text::View::results);
  };
  for (const char16_t* text : {u"paragraph 1500", u"paragraph 3 ", u"paragraph 1999", u"paragraph 0"}) {
    shown.sample.document->select(find(text));
    const QRect seen = shown.view->selectionRect();
    EXPECT_FALSE(seen.isEmpty()) << QString::fromUtf16(text).toStdString();
    EXPECT_LT(seen.top(), shown.view->viewport()->height() * 3 / 4 + 40);
    EXPECT_TRUE(seen.top() > 40 || shown.selection().from == 0) << "with what stands before it";
  }
  shown.sample.document->select(find(u"paragraph 1000"));
  const int top = shown.view->verticalScrollBar()->value();
  shown.sample.document->select(find(u"paragraph 999"));
  EXPECT_EQ(shown.view->verticalScrollBar()->value(), top) << "it is in sight";
  // What an edit puts in front of it moves it along.
  const int before = shown.view->selectionRect().top();
  shown.sample.model().insertBefore(0, u"one\rmore\r");
  EXPECT_NEAR(shown.view->selectionRect().top(), before, 40);
}

TEST(DocumentView, ScrollsThroughTheWholeDocumentWithoutGapsOrJumps) {
  Shown shown(longDocument(400));
  QScrollBar& bar = *shown.view->verticalScrollBar();
  shown.key(Qt::Key_Home, Qt::ControlModifier);
  Position last = 0;
  for (int page = 0; page < 400 && shown.selection().from < shown.sample.model().length() - 1; ++page) {
    shown.key(Qt::Key_PageDown);
    ASSERT_GE(shown.selection().from, last);
    last = shown.selection().from;
  }
  EXPECT_GT(last, shown.sample.model().length() - 200);
  bar.setValue(bar.maximum());
  shown.view->grab();
  EXPECT_EQ(bar.value(), bar.maximum());
  bar.setValue(0);
  shown.view->grab();
  EXPECT_EQ(bar.value(), 0);
}

TEST(DocumentView, KeepsWhatIsSeenWhenTheTextIsShownLarger) {
  Shown shown(longDocument(300));
  const Span wanted =
      *shown.sample.model().find({std::make_shared<const std::u16string>(u"paragraph 200"), {}},
                                 {0, shown.sample.model().length()}, text::View::results);
  shown.sample.document->select(wanted);
  const int height = shown.view->selectionRect().height();
  shown.view->setZoom(2);
  shown.view->reveal(wanted);
  EXPECT_GT(shown.view->selectionRect().height(), height * 3 / 2);
  shown.view->resize(900, 200);
  EXPECT_EQ(shown.selection().from, wanted.from);
}

TEST(DocumentView, IsATextToScreenReaders) {
  Shown shown("one two¶⟦a¦b<h:hid>¦‖⟧last words¶");
  QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(shown.view.get());
  ASSERT_NE(seen, nullptr);
  EXPECT_EQ(seen->text(QAccessible::Name), QStringLiteral("Document"));
  EXPECT_TRUE(seen->state().readOnly);
  QAccessibleTextInterface* const text = seen->textInterface();
  ASSERT_NE(text, nullptr);
  const QString whole = QStringLiteral("one two\na\tb\u200B\u200B\u200B\t\nlast words\n");
  EXPECT_EQ(text->characterCount(), whole.size());
  EXPECT_EQ(text->text(0, 1000), whole);
  const struct {
    int offset;
    QAccessible::TextBoundaryType type;
    QString before, at, after;
  } cases[] = {
      {4, QAccessible::CharBoundary, " ", "t", "w"},
      {5, QAccessible::WordBoundary, " ", "two", "\n"},
      {0, QAccessible::LineBoundary, "", "one two\n", "a\t"},
      {9, QAccessible::ParagraphBoundary, "one two\n", "a\t", whole.mid(10, 5)},
      {20, QAccessible::ParagraphBoundary, "\n", "last words\n", ""},
  };
  for (const auto& it : cases) {
    int from = 0;
    int to = 0;
    EXPECT_EQ(text->textBeforeOffset(it.offset, it.type, &from, &to), it.before) << it.offset;
    EXPECT_EQ(text->textAfterOffset(it.offset, it.type, &from, &to), it.after) << it.offset;
    EXPECT_EQ(text->textAtOffset(it.offset, it.type, &from, &to), it.at) << it.offset;
    EXPECT_EQ(text->text(from, to), it.at);
  }
  text->setSelection(0, 4, 7);
  EXPECT_EQ(shown.selected(), "two");
  int from = 0;
  int to = 0;
  text->selection(0, &from, &to);
  EXPECT_EQ(std::pair(from, to), std::pair(4, 7));
  EXPECT_EQ(text->cursorPosition(), 7);
  const QRect rect = text->characterRect(4);
  EXPECT_EQ(text->offsetAtPoint(rect.center() - QPoint(1, 0)), 4);
  EXPECT_TRUE(seen->rect().contains(rect));
  text->removeSelection(0);
  EXPECT_EQ(text->selectionCount(), 0);
  shown.sample.document->observer(nullptr);
  shown.view->detach();
  EXPECT_EQ(text->characterCount(), 0);
}

TEST(DocumentView, IsEmptyWhereTheDocumentHasGone) {
  Shown shown("one¶");
  shown.sample.document->observer(nullptr);
  shown.sample.document->close();
  shown.view->detach();
  shown.view->grab();
  shown.key(Qt::Key_Right);
  shown.key(Qt::Key_A, Qt::ControlModifier);
  QTest::mouseClick(shown.view->viewport(), Qt::LeftButton);
  EXPECT_FALSE(shown.view->hasSelection());
}

}  // namespace
}  // namespace pluvo::view
