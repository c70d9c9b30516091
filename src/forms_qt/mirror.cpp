#include "mirror.h"

#include "combo_mirror.h"
#include "keys.h"
#include "list_mirror.h"
#include "look.h"
#include "multi_page_mirror.h"
#include "simple_mirrors.h"
#include "text_box_mirror.h"
#include "texts.h"

#include <algorithm>
#include <utility>

namespace pluvo::forms_qt {

std::unique_ptr<Mirror> Mirror::of(forms::Control& control, UserActions& userActions, QWidget& parent) {
  switch (control.kind()) {
    case forms::ControlKind::label:
      return std::make_unique<LabelMirror>(static_cast<forms::Label&>(control), userActions, parent);
    case forms::ControlKind::commandButton:
      return std::make_unique<ButtonMirror>(static_cast<forms::CommandButton&>(control), userActions, parent);
    case forms::ControlKind::textBox: {
      auto& box = static_cast<forms::TextBox&>(control);
      if (box.MultiLine()) return std::make_unique<LinesMirror>(box, userActions, parent);
      return std::make_unique<LineMirror>(box, userActions, parent);
    }
    case forms::ControlKind::checkBox:
      return std::make_unique<CheckBoxMirror>(static_cast<forms::CheckBox&>(control), userActions, parent);
    case forms::ControlKind::comboBox:
      return std::make_unique<ComboMirror>(static_cast<forms::ComboBox&>(control), userActions, parent);
    case forms::ControlKind::listBox:
      return std::make_unique<ListMirror>(static_cast<forms::ListBox&>(control), userActions, parent);
    case forms::ControlKind::multiPage:
      return std::make_unique<MultiPageMirror>(static_cast<forms::MultiPage&>(control), userActions, parent);
    case forms::ControlKind::picture:
      break;
  }
  return std::make_unique<PictureMirror>(static_cast<forms::Picture&>(control), userActions, parent);
}

void Mirror::mirrors(QWidget& widget) {
  widget_ = &widget;
  widget.setObjectName(qt(control_.Name()));
  control_.changed.handledBy([mirror = QPointer<Mirror>(this)] {
    if (mirror && !mirror->telling_) mirror->refresh();
  });
  refresh();
}

void Mirror::refresh() {
  if (!widget_) return;
  widget_->setEnabled(control_.Enabled() && isOffered_);
  widget_->setVisible(control_.Visible());
  widget_->setToolTip(toolTip(control_.ControlTipText()));
  widget_->setAccessibleName(spokenName_.isEmpty() ? spokenName(control_) : spokenName_);
  const QString tip = qt(control_.ControlTipText());
  widget_->setAccessibleDescription(tip == widget_->accessibleName() ? QString() : tip);
  // To look for a font costs as much as all else.
  if (font_ != control_.Font()) setFont(*widget_, font_.emplace(control_.Font()));
  dress();
  refreshKind();
}

void Mirror::looksChanged() {
  font_.reset();
  refresh();
}

void Mirror::admissionChanged() {
  const auto* label = dynamic_cast<const forms::Label*>(&control_);
  const bool isPressed = control_.kind() == forms::ControlKind::commandButton || (label && label->IsLink());
  const bool offered = !isPressed || userActions_.offers(control_);
  if (std::exchange(isOffered_, offered) != offered) refresh();
}

QString Mirror::keyed() const { return withKey(keyText(), key_); }

void Mirror::namedBy(const forms::Control& label) {
  const QString name = spokenName(label);
  if (std::ranges::any_of(name, [](QChar letter) { return letter.isLetter(); })) spokenName_ = name;
  refresh();
}

void Mirror::dress() { dressLabel(*widget_, control_); }

}  // namespace pluvo::forms_qt
