#include "cell_layout.h"

#include <QLabel>
#include <QTabWidget>
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

/// An item that remembers what its widget asks for until that changes. Pages pass on no change of their
/// controls, so that they are asked each time.
std::unique_ptr<QLayoutItem> itemOf(QWidget& widget) {
  if (qobject_cast<QTabWidget*>(&widget) != nullptr) return std::make_unique<QWidgetItem>(&widget);
  return std::make_unique<QWidgetItemV2>(&widget);
}

/// A layout forgets what leaves its widget; this item it does not know to be a widget's.
class LentItem final : public QLayoutItem {
 public:
  explicit LentItem(QWidget& widget) : of_(&widget) {}
  QSize sizeHint() const override { return of_.sizeHint(); }
  QSize minimumSize() const override { return of_.minimumSize(); }
  QSize maximumSize() const override { return of_.maximumSize(); }
  Qt::Orientations expandingDirections() const override { return of_.expandingDirections(); }
  void setGeometry(const QRect& rect) override { of_.setGeometry(rect); }
  QRect geometry() const override { return of_.geometry(); }
  bool isEmpty() const override { return of_.isEmpty(); }
  bool hasHeightForWidth() const override { return of_.hasHeightForWidth(); }
  int heightForWidth(int width) const override { return of_.heightForWidth(width); }

 private:
  QWidgetItemV2 of_;
};

}  // namespace

CellLayout::~CellLayout() = default;

void CellLayout::add(QWidget& widget, forms::Cell cell, bool grows, bool heads) {
  if (cell.columns > 0) inLines_ = false;
  addChildWidget(&widget);
  places_.push_back({itemOf(widget), cell, grows, heads});
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

forms::CellGrid CellLayout::grid(bool narrow, bool withLent) const {
  std::vector<forms::Cell> cells;
  for (const Place& place : places_) cells.push_back(place.cell);
  if (narrow) cells = forms::inOneColumn(std::move(cells));
  std::vector<forms::GridItem> items;
  for (std::size_t at = 0; at < places_.size(); ++at) {
    const Place& place = places_[at];
    const auto heightFor = [&item = *place.item](int width, bool least) {
      if (item.hasHeightForWidth()) return item.heightForWidth(width);
      return least ? item.minimumSize().height() : item.sizeHint().height();
    };
    const bool shown = !place.item->isEmpty() && (place.lent == nullptr || withLent);
    items.push_back({cells[at], shown, place.grows, place.heads, heightFor});
  }
  return {std::move(items), gap(QStyle::PM_LayoutHorizontalSpacing, 3),
          gap(QStyle::PM_LayoutVerticalSpacing, 2)};
}

forms::CellGrid CellLayout::gridFor(int width, bool withLent) const {
  return grid(width < leastWidth(false), withLent);
}

int CellLayout::total(int width, bool least, bool withLent) const {
  const QMargins margins = contentsMargins();
  return gridFor(width, withLent).heightFor(width - margins.left() - margins.right(), least) + margins.top() +
         margins.bottom();
}

int CellLayout::heightForWidth(int width) const { return total(width, false, !held_); }

int CellLayout::minimumHeightForWidth(int width) const { return total(width, true, !held_); }

int CellLayout::wholeHeightFor(int width) const { return total(width, false, true); }

int CellLayout::leastWidth(bool narrow) const {
  const forms::CellGrid grid = this->grid(narrow, true);
  const auto itemAt = [&](std::size_t at) -> const QLayoutItem& { return *places_[at].item; };
  // Pages can be in one column, but are not to begin so.
  int width = grid.widthFor([&](std::size_t at) {
    const bool pages = qobject_cast<const QTabWidget*>(places_[at].item->widget()) != nullptr;
    return pages && !narrow ? itemAt(at).sizeHint().width() : itemAt(at).minimumSize().width();
  });
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
  const int width = std::min(leastWidth(true), leastWidth(false));
  return {width, minimumHeightForWidth(width)};
}

QSize CellLayout::sizeHint() const {
  const int width = leastWidth(false);
  return {width, heightForWidth(width)};
}

void CellLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const QRect inside = rect.marginsRemoved(contentsMargins());
  const std::vector<forms::GridPlace> all =
      gridFor(rect.width(), !held_).arranged(inside.width(), inside.height());
  for (std::size_t at = 0; at < places_.size(); ++at) {
    const forms::GridPlace& place = all[at];
    if (places_[at].item->isEmpty() || (places_[at].lent != nullptr && held_)) continue;
    QRect there{inside.left() + place.left, inside.top() + place.top, place.width, place.height};
    if (const QWidget* lent = places_[at].lent)
      there.moveTopLeft(parentWidget()->mapTo(lent->parentWidget(), there.topLeft()));
    places_[at].item->setGeometry(there);
  }
}

void CellLayout::lend(QWidget& widget, QWidget& parent) {
  const auto place =
      std::ranges::find_if(places_, [&](const Place& one) { return one.item->widget() == &widget; });
  if (place == places_.end()) return;
  place->item.reset();  // a widget has one item that remembers
  place->item = std::make_unique<LentItem>(widget);
  place->lent = &widget;
  widget.setParent(&parent);
}

void CellLayout::holdLent(bool held) {
  if (std::exchange(held_, held) != held) invalidate();
}

}  // namespace pluvo::forms_qt
