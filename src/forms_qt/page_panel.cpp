#include "page_panel.h"

#include "cell_layout.h"
#include "simple_mirrors.h"
#include "texts.h"

#include <QHBoxLayout>
#include <algorithm>

namespace pluvo::forms_qt {

namespace {

using forms::Cell;
using forms::ControlKind;

bool isPlainLabel(const forms::Control& control) {
  const auto* label = dynamic_cast<const forms::Label*>(&control);
  return label != nullptr && !label->IsLink();
}

bool takesInput(const forms::Control& control) {
  return control.kind() == ControlKind::textBox || control.kind() == ControlKind::comboBox ||
         control.kind() == ControlKind::listBox;
}

bool isRightOf(const Cell& label, const Cell& box) {
  return box.row == label.row && box.column == label.column + label.columns;
}

bool isBelow(const Cell& label, const Cell& box) {
  return box.row == label.row + label.rows && box.column == label.column;
}

}  // namespace

PagePanel::PagePanel(const std::vector<forms::Control*>& controls, UserActions& userActions, QWidget* parent)
    : QWidget(parent) {
  for (forms::Control* control : controls) mirrors_.push_back(Mirror::of(*control, userActions, *this));
  tieLabels();
  place();
  orderTabs();
}

void PagePanel::place() {
  auto* layout = new CellLayout(this);
  for (std::size_t at = 0; at < mirrors_.size(); ++at) {
    const Mirror& mirror = *mirrors_[at];
    const Cell& cell = mirror.control().Cell();
    if (cell.columns <= 0 && mirror.control().kind() == ControlKind::commandButton) {
      std::size_t end = at;
      while (end < mirrors_.size() && mirrors_[end]->control().Cell().columns <= 0 &&
             mirrors_[end]->control().kind() == ControlKind::commandButton)
        ++end;
      placeButtons(at, end);
      at = end - 1;
      continue;
    }
    const auto* label = qobject_cast<QLabel*>(mirror.widget());
    const bool heads =
        label != nullptr && isPlainLabel(mirror.control()) && (cell.columns > 0 || label->buddy() != nullptr);
    layout->add(*mirror.widget(), cell, mirror.grows(), heads);
  }
}

void PagePanel::placeButtons(std::size_t from, std::size_t to) {
  auto* bar = new QWidget(this);
  auto* line = new QHBoxLayout(bar);
  line->setContentsMargins(0, fontMetrics().height() / 2, 0, 0);
  line->addStretch(1);
  for (std::size_t at = from; at < to; ++at) line->addWidget(mirrors_[at]->widget());
  static_cast<CellLayout*>(layout())->add(*bar, {}, false, false);
}

Mirror* PagePanel::namedBy(std::size_t label) const {
  const Cell& cell = mirrors_[label]->control().Cell();
  if (cell.columns <= 0) {
    const std::size_t next = label + 1;
    return next < mirrors_.size() && takesInput(mirrors_[next]->control()) ? mirrors_[next].get() : nullptr;
  }
  for (const auto stands : {isRightOf, isBelow}) {
    for (const auto& other : mirrors_) {
      if (takesInput(other->control()) && stands(cell, other->control().Cell())) return other.get();
    }
  }
  return nullptr;
}

void PagePanel::tieLabels() {
  for (std::size_t at = 0; at < mirrors_.size(); ++at) {
    const forms::Control& control = mirrors_[at]->control();
    Mirror* named = isPlainLabel(control) ? namedBy(at) : nullptr;
    if (named == nullptr) continue;
    static_cast<LabelMirror&>(*mirrors_[at]).label().setBuddy(named->widget());
    named->namedBy(control);
    mirrors_[at]->refresh();
  }
}

CellLayout& PagePanel::cells() const { return static_cast<CellLayout&>(*layout()); }

std::vector<QWidget*> PagePanel::lendKept(QWidget& parent) {
  std::vector<QWidget*> lent;
  for (const auto& mirror : mirrors_) {
    if (!mirror->control().StaysInSight()) continue;
    lent.push_back(mirror->widget());
    cells().lend(*mirror->widget(), parent);
    mirror->refresh();
  }
  if (!lent.empty()) orderTabs();
  return lent;
}

void PagePanel::orderTabs() {
  std::vector<const Mirror*> stops;
  for (const auto& mirror : mirrors_) stops.push_back(mirror.get());
  std::ranges::stable_sort(stops, {}, [](const Mirror* mirror) { return mirror->control().TabIndex(); });
  QWidget* before = nullptr;
  for (const Mirror* mirror : stops) {
    if (before != nullptr) setTabOrder(before, mirror->widget());
    before = mirror->widget();
  }
}

}  // namespace pluvo::forms_qt
