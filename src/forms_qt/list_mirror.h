#pragma once

#include "forms/list_box.h"
#include "mirror.h"

#include <QAbstractListModel>
#include <QListView>

namespace pluvo::forms_qt {

/// The rows of a list box, read where they are.
class ListRows final : public QAbstractListModel {
 public:
  explicit ListRows(const forms::ListBox& box) : box_(box) {}
  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  void reset() {
    beginResetModel();
    endResetModel();
  }

 private:
  const forms::ListBox& box_;
};

class ListMirror final : public Mirror {
 public:
  ListMirror(forms::ListBox& box, UserActions& userActions, QWidget& parent);
  ~ListMirror() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool grows() const override { return true; }

 private:
  void refreshKind() override;
  void dress() override;
  void open(const QModelIndex& index);
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);
  void showSelection();

  forms::ListBox& box_;
  ListRows rows_;
  QListView* shown_;
};

}  // namespace pluvo::forms_qt
