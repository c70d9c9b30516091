#pragma once

#include "document/story.h"
#include "looks.h"
#include "shown_text.h"

#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <QTextLayout>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace pluvo::view {

/// A block laid out in lines: one paragraph or part of one, or the paragraphs in the cells of a row and the
/// cells' borders. A part of a paragraph ends where a line does, at the block's end or before it.
/// Coordinates are the block's own, in pixels from its top left corner.
class BlockLayout {
 public:
  BlockLayout(const document::Story& story, Span block, bool isRow, text::View view, const Looks& looks,
              qreal width);

  int height() const { return height_; }
  /// Where the next block begins.
  Position end() const { return end_; }
  void paint(QPainter& painter, QPointF at, const QRectF& clip, Span selection,
             const QPalette& palette) const;

  /// Whether there is any text or mark that can be pointed at; hidden paragraphs have none.
  bool empty() const { return fragments_.empty(); }
  Position firstPosition() const { return fragments_.front().span.from; }
  Position lastPosition() const;
  Position positionAt(QPointF point) const;
  /// Where an insertion point stands before the character at position.
  QRectF caret(Position position) const;
  /// The word (and the blanks behind it) around a position, and the paragraph.
  Span wordAt(Position position) const;
  Span paragraphAt(Position position) const;

  /// The neighbouring insertion points within the block; kOutside when there is none.
  static constexpr Position kOutside = -1;
  Position before(Position position, QTextLayout::CursorMode mode) const;
  Position behind(Position position, QTextLayout::CursorMode mode) const;
  /// To the left or right as seen, which is not always backward or forward.
  Position beside(Position position, bool left) const;
  /// The ends of the line that holds the position.
  Position lineStart(Position position) const;
  Position lineEnd(Position position) const;

 private:
  struct Fragment {
    Span span;  ///< of the paragraph, its mark included
    ShownText shown;
    std::unique_ptr<QTextLayout> layout;
    QPointF at;
    QRectF rect;
    bool isItem = false;  ///< of a list
  };
  struct Column {
    qreal left = 0;
    qreal width = 0;
  };

  const Fragment& fragmentOf(Position position) const;
  std::size_t indexOf(Position position) const;
  const Fragment& fragmentNear(QPointF point) const;
  Position lastOf(const Fragment& fragment) const;

  static void paintItemMark(QPainter& painter, const Fragment& fragment, QPointF at, const QPalette& palette);
  qreal gapBelow() const;
  bool continues(Span span) const;
  bool goesOn(Span span) const;
  /// The place where the last insertion point of a fragment is; the end of a part is one of the next.
  int lastPlace(const Fragment& fragment) const;
  std::vector<qreal> widthsOf(const std::vector<Span>& cells, qreal room) const;
  Position lineStartAtEnd(Span part, Column column) const;
  std::optional<Fragment> inLines(Span span, Column column) const;
  qreal addParagraph(Span span, Column column, qreal top);
  qreal addCell(Span cell, std::int32_t table, Column column, qreal top, int depth);
  qreal addRow(Span row, std::int32_t table, Column column, qreal top, int depth);

  const document::Story& story_;
  text::View view_;
  const Looks& looks_;
  std::vector<Fragment> fragments_;
  std::vector<QRectF> cells_;
  int height_ = 0;
  Position end_ = 0;
};

}  // namespace pluvo::view
