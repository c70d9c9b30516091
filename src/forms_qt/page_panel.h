#pragma once

#include "forms/control.h"
#include "mirror.h"

#include <QWidget>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace pluvo::forms_qt {

class CellLayout;

/// Controls that show together, in their grid, with labels tied to the boxes they name.
class PagePanel final : public QWidget {
 public:
  PagePanel(const std::vector<forms::Control*>& controls, UserActions& userActions, QWidget* parent);

  /// The controls are about to go: the widgets mirror them no more.
  void release() { mirrors_.clear(); }
  const std::vector<std::unique_ptr<Mirror>>& mirrors() const { return mirrors_; }
  /// Gives controls that stay in sight another parent, which sees to them while there is no room for all.
  std::vector<QWidget*> lendKept(QWidget& parent);
  CellLayout& cells() const;

 private:
  void place();
  void placeButtons(std::size_t from, std::size_t to);
  /// The box the label says something of: that right of it, else that below it.
  Mirror* namedBy(std::size_t label) const;
  void tieLabels();
  void orderTabs();

  std::vector<std::unique_ptr<Mirror>> mirrors_;
};

}  // namespace pluvo::forms_qt
