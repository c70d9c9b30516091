#include "cell_layout.h"

#include <QLabel>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace pluvo::forms_qt {

namespace {

/// How wide it would be with all the room it likes.
int wish(const QLayoutItem& item) {
  // A label that may break its lines says so of any width.
  const auto* label = qobject_cast<const QLabel*>(const_cast<QLayoutItem&>(item).widget());  // NOLINT
  return label == nullptr ? item.sizeHint().width() : label->fontMetrics().size(0, label->text()).width();
}

}  // namespace

CellLayout::~CellLayout() = default;

void CellLayout::add(QWidget& widget, forms::Cell cell, bool grows, bool heads) {
  if (cell.columns > 0) inLines_ = false;
  addChildWidget(&widget);
  places_.push_back({std::unique_ptr<QLayoutItem>(new QWidgetItem(&widget)), cell, grows, heads});
  invalidate();
}

void CellLayout::addItem(QLayoutItem* item) {
  places_.push_back({std::unique_ptr<QLayoutItem>(item), {}, false, false});
}

QLayoutItem* CellLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? places_[static_cast<std::size_t>(index)].item.get() : nullptr;
}

QLayoutItem* CellLayout::takeAt(int index) {
  if (index < 0 || index >= count()) return nullptr;
  QLayoutItem* item = places_[static_cast<std::size_t>(index)].item.release();
  places_.erase(places_.begin() + index);
  return item;
}

Qt::Orientations CellLayout::expandingDirections() const {
  const bool grows = std::ranges::any_of(places_, &Place::grows);
  return grows ? Qt::Horizontal | Qt::Vertical : Qt::Orientations(Qt::Horizontal);
}

int CellLayout::gap(QStyle::PixelMetric metric, int share) const {
  const QWidget& page = *parentWidget();
  return std::max(page.style()->pixelMetric(metric, nullptr, &page), page.fontMetrics().height() * share / 4);
}

forms::CellGrid CellLayout::grid() const {
  std::vector<forms::GridItem> items;
  for (const Place& place : places_) {
    const auto heightFor = [&item = *place.item](int width, bool least) {
      if (item.hasHeightForWidth()) return item.heightForWidth(width);
      return least ? item.minimumSize().height() : item.sizeHint().height();
    };
    items.push_back({place.cell, !place.item->isEmpty(), place.grows, place.heads, heightFor});
  }
  return {std::move(items), gap(QStyle::PM_LayoutHorizontalSpacing, 3),
          gap(QStyle::PM_LayoutVerticalSpacing, 2)};
}

int CellLayout::total(int width, bool least) const {
  const QMargins margins = contentsMargins();
  return grid().heightFor(width - margins.left() - margins.right(), least) + margins.top() + margins.bottom();
}

int CellLayout::heightForWidth(int width) const { return total(width, false); }

int CellLayout::minimumHeightForWidth(int width) const { return total(width, true); }

int CellLayout::leastWidth() const {
  const forms::CellGrid grid = this->grid();
  const auto itemAt = [&](std::size_t at) -> const QLayoutItem& { return *places_[at].item; };
  int width = grid.widthFor([&](std::size_t at) { return itemAt(at).minimumSize().width(); });
  if (inLines_) {
    // In the grid the columns decide; lines of their own are as long as they like, within reason.
    constexpr int kFewest = 34;
    constexpr int kMost = 64;
    const int letter = parentWidget()->fontMetrics().averageCharWidth();
    width = std::max(width, grid.widthFor([&](std::size_t at) {
      return std::clamp(wish(itemAt(at)), kFewest * letter, kMost * letter);
    }));
  }
  const QMargins margins = contentsMargins();
  return width + margins.left() + margins.right();
}

QSize CellLayout::minimumSize() const {
  const int width = leastWidth();
  return {width, minimumHeightForWidth(width)};
}

QSize CellLayout::sizeHint() const {
  const int width = leastWidth();
  return {width, heightForWidth(width)};
}

void CellLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const QRect inside = rect.marginsRemoved(contentsMargins());
  const std::vector<forms::GridPlace> all = grid().arranged(inside.width(), inside.height());
  for (std::size_t at = 0; at < places_.size(); ++at) {
    const forms::GridPlace& place = all[at];
    if (!places_[at].item->isEmpty())
      places_[at].item->setGeometry(
          {inside.left() + place.left, inside.top() + place.top, place.width, place.height});
  }
}

}  // namespace pluvo::forms_qt
