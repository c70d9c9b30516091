#include "place_list.h"

#include "document/place_names.h"

#include <array>
#include <utility>

namespace pluvo::desktop {

using document::Place;
using document::Places;

PlaceList::PlaceList() {
  setAccessibleName(tr("Places where the next run works"));
  setToolTip(tr("Where the next run works: in the document in front, and in all files of a run over files"));
  setFrameShape(NoFrame);
  connect(this, &QListWidget::currentRowChanged, this, &PlaceList::choose);
  update(nullptr);
}

std::vector<PlaceList::Row> PlaceList::rowsFor(const document::Document* document) const {
  std::array<int, document::kPlaces> counts{};
  for (std::size_t i = 0; document != nullptr && i < document->count(); ++i) {
    if (!document->isGone(i))
      ++counts.at(static_cast<std::size_t>(document::placeOf(document->story(i).kind())));
  }
  std::vector<Row> rows = {{tr("Main text"), {Place::main}}, {tr("All places"), Places::all()}};
  for (const Place place : document::kAllPlaces) {
    const int count = counts.at(static_cast<std::size_t>(place));
    const Places here = {place};
    if (place == Place::main || (document != nullptr && count == 0 && here != places_)) continue;
    QString text = QString::fromStdString(std::string(wordsOf(place)));
    text.front() = text.front().toUpper();
    rows.push_back({document == nullptr ? text : tr("%1 (%2)").arg(text).arg(count), here});
  }
  return rows;
}

void PlaceList::update(const document::Document* document) {
  std::vector<Row> rows = rowsFor(document);
  if (rows == rows_) return;
  rows_ = std::move(rows);
  const bool blocked = blockSignals(true);
  clear();
  for (const Row& row : rows_) {
    addItem(row.text);
    item(count() - 1)->setSizeHint({0, fontMetrics().height() + kPadding});
    if (row.places == places_) setCurrentRow(count() - 1);
  }
  blockSignals(blocked);
}

/// One place is chosen always: a press beside the rows, or with Ctrl, chooses none less.
QItemSelectionModel::SelectionFlags PlaceList::selectionCommand(const QModelIndex& index,
                                                                const QEvent* /*event*/) const {
  return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void PlaceList::choose(int row) {
  if (row < 0) return;
  places_ = rows_[static_cast<std::size_t>(row)].places;
  chosen();
}

}  // namespace pluvo::desktop
