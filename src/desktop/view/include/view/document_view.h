#pragma once

#include "formats/appearance.h"
#include "memory/document.h"
#include "text/run_map.h"
#include "view/changes.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QPoint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pluvo::view {

class AccessibleDocument;
class BlockLayout;
class Column;
class Steps;
class StoryBar;

/// Shows a document's text: to be read, searched by eye, selected and copied, not to be typed into. Lays out
/// the part in sight and a little around it, so that a document of any length opens and scrolls at once.
/// Heights farther away are estimates.
///
/// The selection is the document's own, and the view shows the story it stands in. The document's observer
/// passes on its changes.
class DocumentView : public QAbstractScrollArea {
 public:
  /// The looks of stories, by their numbers and original positions; see formats::Source.
  using Appearances = std::vector<text::RunMap<formats::Appearance>>;
  /// A document that was looked through.
  struct Prepared {
    std::shared_ptr<Column> mainText;
    Appearances others;  ///< the looks of all stories but main text
  };
  /// Prepares a view, in whichever thread: the work that grows with the document, which is like the one the
  /// log is of. The document is open, and stays so until detach().
  static Prepared prepare(std::shared_ptr<memory::MemoryDocument> document, const ChangeLog& log,
                          Appearances appearances);

  explicit DocumentView(Prepared prepared);
  ~DocumentView() override;

  /// The document closes: nothing of it is looked at any more.
  void detach();

  // What happened to the document.
  /// It goes on as another one, which these changes, one after the other, made of it.
  void take(const std::shared_ptr<memory::MemoryDocument>& now, const std::vector<Changes>& changes);
  /// The story that it stands in is shown from now on. A selection that is not empty is scrolled to.
  void selectionChanged(text::Span selection);
  void viewChanged();

  /// 1 is 100 %.
  double zoom() const { return zoom_; }
  void setZoom(double zoom);
  void zoomBy(int steps);

  void selectAll();
  void copy() const;
  bool hasSelection() const;
  /// Scrolls so that the span's beginning is seen with some text above it.
  void reveal(text::Span span);
  /// Where the selection is, in the viewport; empty when it is out of sight.
  QRect selectionRect();

  /// Called when the user has selected.
  std::function<void(text::Span selection)> userSelected = [](auto) {};
  /// Called when the user wants to see another story.
  std::function<void(std::size_t story)> storyAsked = [](std::size_t) {};
  /// Called when the zoom changed.
  std::function<void()> zoomed = [] {};

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  friend class AccessibleDocument;

  void measure();
  void followSelection();
  void layOutAnew();
  void updateBar();
  void paintCaret(QPainter& painter, const BlockLayout& layout, QPointF at);

  // The insertion point.
  void moveCaret(text::Position position, bool keepsAnchor);
  void select(text::Position anchor, text::Position caret);
  /// Tells screen readers where the insertion point is.
  void tellSelection();
  bool moveByKey(QKeyEvent& event);
  std::optional<text::Position> stepByKey(const QKeyEvent& event);

  std::shared_ptr<Column> column_;    ///< of the story that is shown
  std::shared_ptr<Column> mainText_;  ///< while another story is shown
  Appearances appearances_;           ///< of all stories but main text
  std::unique_ptr<Steps> steps_;
  StoryBar* storyBar_;
  text::Position selectionAnchor_ = 0;
  text::Position caret_ = 0;
  bool selectingByUser_ = false;
  double zoom_ = 1;
  QPoint dragged_;
  QBasicTimer dragTimer_;
  QBasicTimer tripleClick_;
  QBasicTimer caretTimer_;
  bool caretOn_ = true;
  bool updatingBar_ = false;
};

}  // namespace pluvo::view
