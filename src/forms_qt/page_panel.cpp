#include "page_panel.h"

#include "cell_layout.h"
#include "simple_mirrors.h"
#include "texts.h"

#include <QHBoxLayout>

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

/// Whether the one, a label, stands right before the other, or right above it.
bool names(const Cell& label, const Cell& box) {
  const bool before = box.row == label.row && box.column == label.column + label.columns;
  const bool above = box.row == label.row + label.rows && box.column == label.column;
  return before || above;
}

}  // namespace

PagePanel::PagePanel(const std::vector<forms::Control*>& controls, Doings& doings, QWidget* parent)
    : QWidget(parent) {
  for (forms::Control* control : controls) mirrors_.push_back(Mirror::of(*control, doings, *this));
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

void PagePanel::tieLabels() {
  for (std::size_t at = 0; at < mirrors_.size(); ++at) {
    const forms::Control& control = mirrors_[at]->control();
    if (!isPlainLabel(control)) continue;
    Mirror* named = nullptr;
    if (control.Cell().columns <= 0) {
      if (at + 1 < mirrors_.size()) named = mirrors_[at + 1].get();
    } else {
      for (const auto& other : mirrors_) {
        if (takesInput(other->control()) && names(control.Cell(), other->control().Cell()))
          named = other.get();
      }
    }
    if (named == nullptr || !takesInput(named->control())) continue;
    static_cast<LabelMirror&>(*mirrors_[at]).label().setBuddy(named->widget());
    named->namedBy(control);
    mirrors_[at]->refresh();
  }
}

void PagePanel::orderTabs() {
  QWidget* before = nullptr;
  for (const auto& mirror : mirrors_) {
    if (before != nullptr) setTabOrder(before, mirror->widget());
    before = mirror->widget();
  }
}

}  // namespace pluvo::forms_qt
