#pragma once

#include "document/document.h"
#include "document/place.h"

#include <QListWidget>
#include <QString>
#include <functional>
#include <vector>

namespace pluvo::desktop {

/// The list in which the user chooses the places for the next run. It has main text, which is chosen at
/// first, "all", and those of the document in front. Where no document is open it has every place, for runs
/// over files.
class PlaceList final : public QListWidget {
 public:
  PlaceList();

  /// Another document is in front, or its stories have changed; none where null.
  void update(const document::Document* document);
  const document::Places& places() const { return places_; }

  /// The user has chosen other ones.
  std::function<void()> chosen = [] {};

  QSize sizeHint() const override { return {kWidth, kWidth}; }

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;

 private:
  static constexpr int kWidth = 150;
  static constexpr int kPadding = 8;  ///< of a row, above and below its text
  struct Row {
    QString text;
    document::Places places;
    bool operator==(const Row&) const = default;
  };

  std::vector<Row> rowsFor(const document::Document* document) const;
  void choose(int row);

  document::Places places_ = {document::Place::main};
  std::vector<Row> rows_;
};

}  // namespace pluvo::desktop
