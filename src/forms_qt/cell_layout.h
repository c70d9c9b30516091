#pragma once

#include "forms/cell_grid.h"
#include "forms/control.h"

#include <QLayout>
#include <QStyle>
#include <memory>
#include <vector>

namespace pluvo::forms_qt {

/// Places widgets in forms' grid, with the style's gaps.
class CellLayout final : public QLayout {
 public:
  explicit CellLayout(QWidget* parent) : QLayout(parent) {}
  ~CellLayout() override;

  /// A cell without columns is a line of its own, below the others.
  void add(QWidget& widget, forms::Cell cell, bool grows, bool heads);
  /// The widget gets another parent, above this layout's, and its place here all the same, while held is
  /// false.
  void lend(QWidget& widget, QWidget& parent);
  void holdLent(bool held);
  /// The height wished for, with the height that was lent.
  int wholeHeightFor(int width) const;

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(places_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  int minimumHeightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& rect) override;

 private:
  struct Place {
    std::unique_ptr<QLayoutItem> item;
    forms::Cell cell;
    bool grows = false;
    /// It says what the box below it is for.
    bool heads = false;
    QWidget* lent = nullptr;
  };
  /// In one column where it is too narrow for the design.
  forms::CellGrid gridFor(int width, bool withLent) const;
  forms::CellGrid grid(bool narrow, bool withLent) const;
  int total(int width, bool least, bool withLent) const;
  /// The style's, and at least this many quarters of a line.
  int gap(QStyle::PixelMetric metric, int share) const;
  int leastWidth(bool narrow) const;

  std::vector<Place> places_;
  /// Every widget has lines of its own.
  bool inLines_ = true;
  bool held_ = false;
};

}  // namespace pluvo::forms_qt
