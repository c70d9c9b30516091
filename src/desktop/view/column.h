#pragma once

#include "block_index.h"
#include "block_layout.h"
#include "looks.h"
#include "memory/document.h"
#include "view/changes.h"

#include <QSize>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace pluvo::view {

/// A story of a document as a column of blocks, and which part of it is in sight. Blocks in sight and a
/// little around them are laid out. Heights farther away are guesses. So the top of the view is a block and a
/// number of its pixels, and better heights above it move nothing.
///
/// Everything but isThere() and isOpen() needs an open document.
class Column {
 public:
  static constexpr int kTopMargin = 24;
  static constexpr int kSideMargin = 28;

  /// In whichever thread. Nothing is laid out before measure().
  Column(std::shared_ptr<memory::MemoryDocument> document, std::size_t number,
         const std::vector<Block>& blocks, text::RunMap<formats::Appearance> appearance);

  /// The document closes.
  void detach();
  bool isThere() const { return index_ != nullptr; }
  bool isOpen() const { return isThere() && document_->isOpen(); }

  const std::shared_ptr<memory::MemoryDocument>& document() const { return document_; }
  /// Of the story.
  std::size_t number() const { return number_; }
  document::Story& story() const { return document_->stories().story(number_); }
  bool hasSelection() const;
  const QFont& font() const { return looks_.font; }

  /// How it is shown from now on; forget() lays it out anew.
  void measure(double zoom, const QColor& paper, QSize viewport);
  void resized(QSize viewport) { viewport_ = viewport; }
  void forget();
  /// The document is another one, as its text will be when all changes are taken.
  void take(std::shared_ptr<memory::MemoryDocument> document) { document_ = std::move(document); }
  void take(const StoryChange& change);

  // Blocks.
  std::size_t count() const { return index_->count(); }
  std::size_t blockAt(Position position) const { return index_->at(position); }
  int height(std::size_t block) const { return index_->height(block); }
  /// Lays the block out where it is not.
  const BlockLayout& layoutOf(std::size_t block);
  /// The block of a position, laid out.
  struct Place {
    std::size_t block;
    const BlockLayout& layout;
  };
  Place placeOf(Position position);
  /// The whole paragraph, however many blocks it is.
  Span paragraphAt(Position position);

  // The part in sight. Points are the viewport's.
  qreal left() const;
  qreal width() const;
  /// The insertion point, in its block, and in the viewport, seen or not.
  QRectF caretInBlock(Position position);
  QRectF caretInSight(Position position);
  /// The insertion point nearest to a point of the viewport, or of a block.
  Position positionAt(QPoint point);
  Position positionAt(std::size_t block, QPointF inBlock);
  /// Where the selection is; empty when it is out of sight.
  QRect selectionRect();
  /// From the top, each block in sight, laid out, and where it stands.
  using Visit = std::function<void(std::size_t block, const BlockLayout& layout, QPointF at)>;
  void forEachInSight(const Visit& visit);

  // Scrolling.
  /// The values of a scroll bar, in pixels.
  struct Bar {
    int last = 0;
    int page = 0;
    int step = 0;
    int value = 0;
  };
  /// Lays out the part in sight, and tells where that is.
  Bar bar();
  void scrollTo(int value);
  void scrollToEnd();
  /// Scrolls so that a position is seen with some text above it; whether that moved anything.
  bool reveal(Position position);
  /// Scrolls no farther than the insertion point is out of sight.
  void bringIntoSight(Position position);

 private:
  const BlockLayout& layOut(std::size_t block);
  void layOutAround();
  void putAt(std::size_t block, int inBlock, int below);
  std::int64_t anchorTop();
  void keepFewLayouts();

  std::shared_ptr<memory::MemoryDocument> document_;
  std::size_t number_;
  Looks looks_;
  /// Heights are guessed from this.
  double charactersInLine_ = 80;
  double lineHeight_ = 16;
  std::unique_ptr<BlockIndex> index_;
  std::map<Position, std::unique_ptr<BlockLayout>> layouts_;
  QSize viewport_;
  /// The top of the viewport: a block, and how many pixels of it are above.
  Position topBlock_ = 0;
  int topOffset_ = 0;
};

}  // namespace pluvo::view
