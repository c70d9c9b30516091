#include "column.h"

#include "edits.h"
#include "layout_maker.h"

#include <QApplication>
#include <algorithm>
#include <cmath>
#include <utility>

namespace pluvo::view {

namespace {

/// A line longer than this many average characters is hard to read.
constexpr qreal kColumnCharacters = 92;
constexpr qreal kFontSize = 11.5;

}  // namespace

Column::Column(std::shared_ptr<memory::MemoryDocument> document, std::size_t number,
               const std::vector<Block>& blocks, text::RunMap<formats::Appearance> appearance)
    : document_(std::move(document)),
      number_(number),
      looks_({{}, std::move(appearance), {}, {}}),
      index_(std::make_unique<BlockIndex>(blocks, story().length(), [this](Span block, bool isRow) {
        const double lines = isRow ? 1 : std::max(std::ceil(block.length() / charactersInLine_), 1.0);
        return static_cast<int>(lineHeight_ * (lines * 1.12 + 0.4));
      })) {}

void Column::detach() {
  layouts_.clear();
  index_.reset();
  document_.reset();
}

bool Column::hasSelection() const {
  return document_ && document_->isOpen() && !document_->selection().empty();
}

void Column::measure(double zoom, const QColor& paper, QSize viewport) {
  viewport_ = viewport;
  QFont font = QApplication::font();
  font.setPointSizeF(kFontSize * zoom);
  looks_.font = font;
  colourChanges(looks_, paper);
  const QFontMetricsF metrics(font);
  charactersInLine_ = std::max<qreal>(width() / metrics.averageCharWidth(), 8);
  lineHeight_ = metrics.height();
}

qreal Column::width() const {
  const qreal room = viewport_.width() - 2 * kSideMargin;
  const qreal widest = QFontMetricsF(looks_.font).averageCharWidth() * kColumnCharacters;
  return std::max<qreal>(std::min(room, widest), 120);
}

qreal Column::left() const {
  return std::max<qreal>(std::floor((viewport_.width() - width()) / 2), kSideMargin / 2.0);
}

// Blocks.

/// Everything is laid out anew: in another size, or another view of the text.
void Column::forget() {
  layouts_.clear();
  const std::size_t top = index_->at(topBlock_);
  index_->forgetHeights();
  topBlock_ = index_->span(top).from;
}

/// Blocks that nothing touched stay laid out.
void Column::take(const StoryChange& change) {
  std::vector<Exchange> rescanned;
  rescanned.reserve(change.patches.size());
  for (const Patch& patch : change.patches) rescanned.push_back(patch.text);
  std::map<Position, std::unique_ptr<BlockLayout>> kept;
  for (auto& [from, layout] : layouts_) {
    const Span block{from, layout->end()};
    if (touch(rescanned, block) || touch(change.touched, block)) continue;
    const Position now = positionAfter(change.touched, from);
    layout->moveBy(now - from);
    kept.emplace_hint(kept.end(), now, std::move(layout));
  }
  layouts_ = std::move(kept);
  index_->take(change.patches);
  const Position top = std::min(positionAfter(change.touched, topBlock_), index_->length());
  topBlock_ = index_->span(index_->at(top)).from;
}

/// Afterwards the block may begin earlier: a part of a paragraph begins at the end of a line of the part
/// before. That one is laid out first. How that part began itself matters to few lines only.
const BlockLayout& Column::layoutOf(std::size_t block) {
  const auto known = layouts_.find(index_->span(block).from);
  if (known != layouts_.end()) return *known->second;
  if (index_->continues(block) && !index_->exact(block - 1)) layOut(block - 1);
  return layOut(block);
}

const BlockLayout& Column::layOut(std::size_t block) {
  const Span span = index_->span(block);
  auto layout = LayoutMaker(story(), document_->view(), looks_).layOut(span, index_->isRow(block), width());
  index_->setHeight(block, layout->height());
  if (layout->end() != span.to) {
    layouts_.erase(span.to);
    if (topBlock_ == span.to) topBlock_ = layout->end();
    index_->startAt(block + 1, layout->end());
  }
  return *(layouts_[span.from] = std::move(layout));
}

Column::Place Column::placeOf(Position position) {
  for (;;) {
    const std::size_t block = index_->at(position);
    const BlockLayout& layout = layoutOf(block);
    // Laid out, a part of a paragraph may end before the position.
    if (index_->at(position) == block) return {block, layout};
  }
}

Span Column::paragraphAt(Position position) {
  const Place place = placeOf(position);
  if (place.layout.empty()) return {position, position};
  if (index_->isRow(place.block)) return place.layout.paragraphAt(position);
  std::size_t first = place.block;
  while (index_->continues(first)) --first;
  std::size_t last = place.block;
  while (last + 1 < index_->count() && index_->continues(last + 1)) ++last;
  return {index_->span(first).from, index_->span(last).to};
}

/// Makes the heights of the part in sight exact, and of half a page above and below, so that scrolling is
/// smooth.
void Column::layOutAround() {
  const int page = viewport_.height();
  const std::size_t first = index_->at(topBlock_);
  layoutOf(first);
  topOffset_ = std::min(topOffset_, index_->height(first));
  int room = page + page / 2 + topOffset_;
  for (std::size_t i = first; i < index_->count() && room > 0; ++i) {
    layoutOf(i);
    room -= index_->height(i);
  }
  room = page / 2;
  for (std::size_t i = first; i > 0 && room > 0; --i) {
    layoutOf(i - 1);
    room -= index_->height(i - 1);
  }
}

void Column::keepFewLayouts() {
  constexpr std::size_t kMost = 600;
  if (layouts_.size() <= kMost) return;
  const std::size_t top = index_->at(topBlock_);
  const std::size_t from = top > kMost / 4 ? top - kMost / 4 : 0;
  const std::size_t to = std::min(top + kMost / 2, index_->count() - 1);
  layouts_.erase(layouts_.begin(), layouts_.lower_bound(index_->span(from).from));
  layouts_.erase(layouts_.upper_bound(index_->span(to).from), layouts_.end());
}

// The part in sight.

QRectF Column::caretInBlock(Position position) {
  const Place place = placeOf(position);
  return place.layout.empty() ? QRectF(0, 0, 1, 1) : place.layout.caret(position);
}

QRectF Column::caretInSight(Position position) {
  const QRectF caret = caretInBlock(position);
  const std::int64_t top = index_->top(index_->at(position)) - anchorTop() + kTopMargin;
  return caret.translated(left(), static_cast<qreal>(top));
}

Position Column::positionAt(QPoint point) {
  const std::int64_t y = anchorTop() + point.y() - kTopMargin;
  const std::size_t block = index_->atHeight(std::max<std::int64_t>(y, 0));
  return positionAt(block, {point.x() - left(), static_cast<qreal>(y - index_->top(block))});
}

Position Column::positionAt(std::size_t block, QPointF inBlock) {
  const BlockLayout& layout = layoutOf(block);
  return layout.empty() ? index_->span(block).from : layout.positionAt(inBlock);
}

QRect Column::selectionRect() {
  const Span selection = document_->selection();
  const QRectF first = caretInSight(selection.from);
  const QRectF last = caretInSight(selection.to);
  QRectF around = first.united(last);
  if (last.top() > first.top()) {
    around.setLeft(left());
    around.setWidth(width());
  }
  return around.toAlignedRect().intersected(QRect({}, viewport_));
}

void Column::forEachInSight(const Visit& visit) {
  std::size_t block = index_->at(topBlock_);
  qreal y = kTopMargin - topOffset_;
  // The margin above the first block scrolls away with it.
  while (block > 0 && y > 0) {
    --block;
    layoutOf(block);
    y -= index_->height(block);
  }
  for (; block < index_->count() && y < viewport_.height(); ++block) {
    visit(block, layoutOf(block), {left(), y});
    y += index_->height(block);
  }
}

// Scrolling.

std::int64_t Column::anchorTop() {
  const std::size_t block = index_->at(topBlock_);
  return index_->top(block) + std::min(topOffset_, index_->height(block));
}

Column::Bar Column::bar() {
  layOutAround();
  const int page = viewport_.height();
  const std::size_t last = index_->count() - 1;
  const std::int64_t end = index_->top(last) + index_->height(last) + std::int64_t{2} * kTopMargin;
  if (anchorTop() + page > end) putAt(last, index_->height(last), page - 2 * kTopMargin);
  const std::int64_t all = index_->top(index_->count()) + std::int64_t{2} * kTopMargin;
  const Bar bar{.last = static_cast<int>(std::clamp<std::int64_t>(all - page, 0, INT_MAX)),
                .page = page,
                .step = static_cast<int>(QFontMetricsF(looks_.font).height() * 1.5),
                .value = static_cast<int>(std::min<std::int64_t>(anchorTop(), INT_MAX))};
  keepFewLayouts();
  return bar;
}

void Column::scrollTo(int value) {
  const std::size_t block = index_->atHeight(value);
  topBlock_ = index_->span(block).from;
  topOffset_ = static_cast<int>(value - index_->top(block));
}

/// The blocks before the end may be higher than guessed.
void Column::scrollToEnd() {
  const std::size_t last = index_->count() - 1;
  putAt(last, layoutOf(last).height(), viewport_.height() - 2 * kTopMargin);
}

/// Scrolls so that a place in a block stands so far below the top of the view, or less at the beginning. The
/// blocks above it are laid out, so that it does stand there.
void Column::putAt(std::size_t block, int inBlock, int below) {
  int y = inBlock;
  while (y < below && block > 0) {
    --block;
    layoutOf(block);
    y += index_->height(block);
  }
  topBlock_ = index_->span(block).from;
  topOffset_ = std::max(y - below, 0);
}

bool Column::reveal(Position position) {
  layOutAround();
  const int page = viewport_.height();
  const QRectF line = caretInBlock(position);
  const std::size_t block = index_->at(position);
  const std::int64_t top = index_->top(block) + static_cast<std::int64_t>(line.top()) + kTopMargin;
  const std::int64_t seenFrom = anchorTop();
  const bool seen =
      top >= seenFrom + 8 && top + static_cast<std::int64_t>(line.height()) + 8 <= seenFrom + page / 2;
  if (!seen) putAt(block, static_cast<int>(line.top()), page / 4);
  return !seen;
}

/// The heights between the caret and the part in sight are guesses; the way there is laid out from the caret.
void Column::bringIntoSight(Position position) {
  layOutAround();
  const QRectF caret = caretInSight(position);
  const std::size_t block = index_->at(position);
  const QRectF inBlock = caretInBlock(position);
  if (caret.top() < kTopMargin) {
    putAt(block, static_cast<int>(inBlock.top()), 0);
  } else if (caret.bottom() + kTopMargin > viewport_.height()) {
    putAt(block, static_cast<int>(std::ceil(inBlock.bottom())),
          std::max(viewport_.height() - 2 * kTopMargin, 0));
  }
}

}  // namespace pluvo::view
