#include "list_mirror.h"

#include "look.h"
#include "texts.h"

#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

namespace pluvo::forms_qt {

namespace {

/// As high as a few rows, where it cannot have more.
class RowsView final : public QListView {
 public:
  explicit RowsView(QWidget* parent) : QListView(parent) {}
  QSize sizeHint() const override { return {QListView::sizeHint().width(), height(14)}; }
  QSize minimumSizeHint() const override { return {QListView::minimumSizeHint().width(), height(3)}; }

 private:
  int height(int rows) const {
    const QMargins margins = contentsMargins();
    return fontMetrics().lineSpacing() * rows + margins.top() + margins.bottom();
  }
};

}  // namespace

int ListRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(box_.ListCount());
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  if (role != Qt::DisplayRole || row >= box_.ListCount()) return {};
  return qt(box_.List(row));
}

ListMirror::ListMirror(forms::ListBox& box, UserActions& userActions, QWidget& parent)
    : Mirror(box, userActions), box_(box), rows_(box), shown_(new RowsView(&parent)) {
  shown_->setUniformItemSizes(true);
  shown_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  shown_->setTextElideMode(Qt::ElideNone);
  shown_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  shown_->setModel(&rows_);
  shown_->installEventFilter(this);
  connect(shown_, &QListView::doubleClicked, this, &ListMirror::open);
  connect(shown_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ListMirror::selectionChanged);
  mirrors(*shown_);
}

ListMirror::~ListMirror() {
  if (widget() != nullptr) shown_->setModel(nullptr);
}

void ListMirror::open(const QModelIndex& index) {
  if (!index.isValid()) return;
  userActions().decides([&] { box_.open(static_cast<std::size_t>(index.row())); });
}

bool ListMirror::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  if (box_.DblClick.isHandled()) {
    open(shown_->currentIndex());
  } else {
    event->ignore();  // the form has a use for it
  }
  return true;
}

void ListMirror::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  const QScopedValueRollback telling(telling_, true);
  const auto tell = [this](const QItemSelection& rows, bool value) {
    for (const QItemSelectionRange& range : rows) {
      for (int row = range.top(); row <= range.bottom(); ++row)
        box_.select(static_cast<std::size_t>(row), value);
    }
  };
  userActions().does([&] {
    tell(deselected, false);
    tell(selected, true);
  });
}

void ListMirror::showSelection() {
  QItemSelection selection;
  for (std::size_t row = 0; row < box_.ListCount(); ++row) {
    if (!box_.Selected(row)) continue;
    const QModelIndex index = rows_.index(static_cast<int>(row));
    selection.select(index, index);
  }
  const QSignalBlocker quiet(shown_->selectionModel());
  shown_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void ListMirror::dress() { dressBox(*shown_, box_); }

void ListMirror::refreshKind() {
  shown_->setSelectionMode(box_.MultiSelect() ? QAbstractItemView::ExtendedSelection
                                              : QAbstractItemView::SingleSelection);
  const QString current = shown_->currentIndex().data().toString();
  const int scrolled = shown_->verticalScrollBar()->value();
  {
    const QScopedValueRollback telling(telling_, true);
    rows_.reset();
  }
  showSelection();
  for (int row = 0; !current.isEmpty() && row < rows_.rowCount({}); ++row) {
    const QModelIndex index = rows_.index(row);
    if (index.data().toString() != current) continue;
    shown_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    break;
  }
  shown_->verticalScrollBar()->setValue(scrolled);
}

}  // namespace pluvo::forms_qt
