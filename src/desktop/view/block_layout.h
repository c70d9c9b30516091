#pragma once

#include "shown_text.h"

#include <QPainter>
#include <QPalette>
#include <QRectF>
#include <QTextLayout>
#include <cstddef>
#include <memory>
#include <vector>

namespace pluvo::view {

/// A block laid out in lines: which place of it stands where, and which come next to it. A part of a
/// paragraph ends where a line does, at the block's end or before it. Coordinates are the block's own, in
/// pixels from its top left corner. It holds its own text, so that the document may be another one meanwhile.
class BlockLayout {
 public:
  int height() const { return height_; }
  /// Where the next block begins.
  Position end() const { return end_; }
  /// The block stands elsewhere in the text, and is the same.
  void moveBy(Position growth);
  void paint(QPainter& painter, QPointF at, const QRectF& clip, Span selection,
             const QPalette& palette) const;

  /// Whether there is any text or mark that can be pointed at; hidden paragraphs have none.
  bool empty() const { return fragments_.empty(); }
  Position firstPosition() const { return fragments_.front().span.from; }
  Position lastPosition() const { return lastOf(fragments_.back()); }
  Position positionAt(QPointF point) const;
  /// Where an insertion point stands before the character at position.
  QRectF caret(Position position) const;
  /// The word (and the blanks after it) around a position, and the paragraph.
  Span wordAt(Position position) const;
  Span paragraphAt(Position position) const { return fragmentOf(position).span; }

  /// The neighbouring insertion points within the block; kOutside when there is none.
  static constexpr Position kOutside = -1;
  Position before(Position position, QTextLayout::CursorMode mode) const;
  Position after(Position position, QTextLayout::CursorMode mode) const;
  /// To the left or right as seen, which is not always backward or forward.
  Position beside(Position position, bool left) const;
  /// The ends of the line that holds the position.
  Position lineStart(Position position) const;
  Position lineEnd(Position position) const;

 private:
  friend class LayoutMaker;

  /// A paragraph, or a part of one.
  struct Fragment {
    Span span;  ///< its mark included
    ShownText shown;
    std::unique_ptr<QTextLayout> layout;
    QPointF at;
    QRectF rect;
    bool isItem = false;   ///< of a list
    bool hasMark = false;  ///< the paragraph ends with it
    bool goesOn = false;   ///< the paragraph does, in the next block
  };

  const Fragment& fragmentOf(Position position) const { return fragments_[indexOf(position)]; }
  std::size_t indexOf(Position position) const;
  const Fragment& fragmentNear(QPointF point) const;
  /// The place where the last insertion point of a fragment is; the end of a part is one of the next.
  static int lastPlace(const Fragment& fragment);
  static Position lastOf(const Fragment& fragment);
  void paintText(QPainter& painter, const Fragment& fragment, QPointF at, const QRectF& clip, Span selection,
                 const QPalette& palette) const;

  std::vector<Fragment> fragments_;
  std::vector<QRectF> cells_;
  int height_ = 0;
  Position end_ = 0;
};

}  // namespace pluvo::view
