#include "view/document_view.h"

#include "block_layout.h"
#include "shown_text.h"
#include "support/notation.h"

#include <QtTest/QtTest>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QtWidgets>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pluvo::view {
namespace {

TEST(ShownText, KnowsWhichCharacterStandsWhere) {
  notation::Sample sample("a<h:hid>b{code|re}c¶");
  const ShownText results(sample.mainText(), {0, sample.mainText().length()}, text::View::results);
  EXPECT_EQ(results.text(), QStringLiteral("abrec"));
  EXPECT_EQ(results.position(1), 4);
  EXPECT_EQ(results.shown(2), 1) << "hidden: the next that shows";
  EXPECT_EQ(results.position(5), sample.mainText().length() - 1) << "before the mark";
  const ShownText codes(sample.mainText(), {0, sample.mainText().length()}, text::View::codes);
  EXPECT_EQ(codes.text(), QStringLiteral("ab{code}c"));
  for (int place = 0; place <= codes.text().size(); ++place)
    EXPECT_EQ(codes.shown(codes.position(place)), place);
}

TEST(CopiedText, IsAsOtherProgramsTakeIt) {
  notation::Sample sample("one¶⟦a¦b¦‖c¦d¦‖⟧two<h: hidden>\u000Bthree¶");
  EXPECT_EQ(copiedText(sample.mainText(), {0, sample.mainText().length()}, text::View::results),
            QStringLiteral("one\na\tb\nc\td\ntwo\nthree\n"));
}

/// A view on a document in a window, observed as the program does.
struct Shown : memory::DocumentObserver {
  explicit Shown(std::string_view notation) : sample(notation) {
    view = std::make_unique<DocumentView>(DocumentView::prepare(sample.document, log, {}));
    sample.document->observer(this);
    view->resize(420, 300);
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(view.get(), 60'000));
    view->setFocus();
  }
  ~Shown() override { sample.document->observer(nullptr); }
  void replaced(const document::Story&, Span span, Position newLength) override {
    log.replaced(0, span, newLength);
    view->take(sample.document, {log.take()});
  }
  void highlighted(const document::Story&, Span span) override {
    log.highlighted(0, span);
    view->take(sample.document, {log.take()});
  }
  void selected(const document::Story&, Span span) override { view->selectionChanged(span); }
  void viewChanged() override { view->viewChanged(); }

  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(view.get(), key, modifiers);
  }
  Span selection() { return sample.document->selection(); }
  std::string selected() {
    const std::u16string text = sample.mainText().visibleText(selection(), sample.document->view());
    return QString::fromStdU16String(text).toStdString();
  }

  notation::Sample sample;
  ChangeLog log{sample.document->stories()};
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
    return *shown.sample.mainText().find({std::make_shared<const std::u16string>(text), {}},
                                         {0, shown.sample.mainText().length()}, text::View::results);
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
  shown.sample.mainText().insertBefore(0, u"one\rmore\r");
  EXPECT_NEAR(shown.view->selectionRect().top(), before, 40);
  // An edit leaves in sight what a new view would show.
  for (const Span span : {Span{0, 9}, Span{150, 180}, Span{400, 401}}) {
    shown.key(Qt::Key_Home, Qt::ControlModifier);
    shown.sample.mainText().replace(span, u"a\rlonger text", text::View::results);
    shown.sample.mainText().highlight({span.to + 30, span.to + 40}, 7);
    shown.view->clearFocus();
    DocumentView anew(
        DocumentView::prepare(shown.sample.document, ChangeLog(shown.sample.document->stories()), {}));
    anew.resize(shown.view->size());
    anew.show();
    EXPECT_EQ(shown.view->viewport()->grab().toImage(), anew.viewport()->grab().toImage()) << span.from;
    shown.view->setFocus();
  }
}

/// How far below the top of the view each row of pixels of that colour is painted.
std::vector<int> rowsOf(DocumentView& view, const QColor& colour) {
  const QImage seen = view.viewport()->grab().toImage();
  std::vector<int> rows;
  for (int y = 0; y < seen.height(); ++y) {
    for (int x = 0; x < seen.width(); ++x) {
      if (seen.pixelColor(x, y) != colour) continue;
      rows.push_back(y);
      break;
    }
  }
  return rows;
}

TEST(DocumentView, ShowsTheLineItJumpedTo) {
  std::string wide;
  std::string narrow;
  for (int i = 0; i < 400; ++i) {
    for (int words = 0; words < 3 + i % 9; ++words) wide += "WWWWWW MMMMMM ";
    for (int words = 0; words < 3 + i % 9; ++words) narrow += "iiiiiiii llllllll ";
    wide += "W¶";
    narrow += "i¶";
  }
  std::string giant;
  for (int i = 0; i < 6000; ++i) giant += "WWWW ";
  for (const std::string& notation : {wide, narrow, giant + "¶"}) {
    Shown shown(notation);
    const QColor marked = shown.view->palette().color(QPalette::Active, QPalette::Highlight);
    const auto seen = [&](const char* jump) {
      const std::vector<int> rows = rowsOf(*shown.view, marked);
      ASSERT_GT(rows.size(), 12U) << jump << " in " << notation.substr(0, 12);
      EXPECT_GT(rows.front(), 0) << jump;
      EXPECT_LT(rows.back(), shown.view->viewport()->height() - 1) << jump;
    };
    const Qt::KeyboardModifiers control = Qt::ControlModifier, shift = Qt::ShiftModifier;
    for (int round = 0; round < 2; ++round) {
      shown.key(Qt::Key_End, control);
      shown.key(Qt::Key_Home, shift);
      seen("to the end");
      shown.view->verticalScrollBar()->setValue(shown.view->verticalScrollBar()->maximum() / 2);
      shown.key(Qt::Key_PageUp);
      shown.key(Qt::Key_End, shift);
      seen("a page up");
      shown.key(Qt::Key_Home, control);
      shown.key(Qt::Key_End, shift);
      seen("to the beginning");
      shown.sample.document->select(
          {shown.sample.mainText().length() - 3, shown.sample.mainText().length() - 1});
      seen("to what was found");
      shown.key(Qt::Key_Home, control);
      shown.view->verticalScrollBar()->setValue(shown.view->verticalScrollBar()->maximum());
      shown.view->selectAll();
      EXPECT_LT(rowsOf(*shown.view, marked).back(), shown.view->viewport()->height() - 1);
      EXPECT_EQ(shown.view->verticalScrollBar()->value(), shown.view->verticalScrollBar()->maximum());
    }
  }
}

TEST(DocumentView, BreaksNoLineWithinAGiantParagraph) {
  std::string giant = "begin¶";
  for (int i = 0; i < 8000; ++i) giant += "word ";
  Shown shown(giant + "¶end¶");
  QAccessibleTextInterface& text = *QAccessible::queryAccessibleInterface(shown.view.get())->textInterface();
  const Position last = shown.sample.mainText().length() - 6;
  for (const Qt::Key start : {Qt::Key_Home, Qt::Key_End}) {
    shown.view->setZoom(shown.view->zoom() * 1.2);  // laid out anew
    shown.key(start, Qt::ControlModifier);
    int from = 0;
    int to = 0;
    text.textAtOffset(6, QAccessible::LineBoundary, &from, &to);
    const int usual = to - from;
    for (Position at = last; at > 6; at = from - 1) {
      text.textAtOffset(at, QAccessible::LineBoundary, &from, &to);
      ASSERT_TRUE(to - from == usual || at == last) << from;
    }
    for (Position at = 6; at < last; at = to) {
      text.textAtOffset(at, QAccessible::LineBoundary, &from, &to);
      ASSERT_TRUE(to - from == usual || to > last) << from;
    }
  }
  for (Position at = 6 + 8100; at < 6 + 8192; ++at) {
    shown.sample.document->select({at, at});
    shown.key(Qt::Key_Left);
    ASSERT_EQ(shown.selection().from, at - 1) << "over the seam";
  }
}

TEST(DocumentView, MarksTrackedChanges) {
  notation::Parsed parsed = notation::parse("stays goes came¶");
  auto structure = parsed.content.structure.valueAt(6);
  structure.deleted = true;
  parsed.content.structure.set(6, 10, structure);
  notation::Sample sample(std::move(parsed), nullptr);
  sample.mainText().insertBefore(0, u"it ");  // looks go with the text as it was read
  text::RunMap<formats::Appearance> appearance;
  appearance.append(11, {});
  formats::Appearance came;
  came.inserted = true;
  appearance.append(4, came);
  appearance.append(1, {});
  DocumentView view(
      DocumentView::prepare(sample.document, ChangeLog(sample.document->stories()), {appearance}));
  for (const QColor& paper : {QColor(Qt::white), QColor(0x1E1F22)}) {
    QPalette palette;
    palette.setColor(QPalette::Base, paper);
    view.setPalette(palette);
    const QImage seen = view.viewport()->grab().toImage();
    int red = 0;
    int green = 0;
    for (int y = 0; y < seen.height(); ++y) {
      for (int x = 0; x < seen.width(); ++x) {
        const QColor pixel = seen.pixelColor(x, y);
        red += pixel.red() > pixel.green() + 60 && pixel.red() > pixel.blue() + 60 ? 1 : 0;
        green += pixel.green() > pixel.red() + 40 && pixel.green() > pixel.blue() + 20 ? 1 : 0;
      }
    }
    EXPECT_GT(red, 20) << paper.name().toStdString();
    EXPECT_GT(green, 20) << paper.name().toStdString();
  }
}

TEST(DocumentView, ScrollsThroughTheWholeDocumentWithoutGapsOrJumps) {
  Shown shown(longDocument(400));
  QScrollBar& bar = *shown.view->verticalScrollBar();
  shown.key(Qt::Key_Home, Qt::ControlModifier);
  Position last = 0;
  for (int page = 0; page < 400 && shown.selection().from < shown.sample.mainText().length() - 1; ++page) {
    shown.key(Qt::Key_PageDown);
    ASSERT_GE(shown.selection().from, last);
    last = shown.selection().from;
  }
  EXPECT_GT(last, shown.sample.mainText().length() - 200);
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
      *shown.sample.mainText().find({std::make_shared<const std::u16string>(u"paragraph 200"), {}},
                                    {0, shown.sample.mainText().length()}, text::View::results);
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
