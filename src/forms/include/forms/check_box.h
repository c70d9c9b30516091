#pragma once

#include "forms/control.h"

#include <string>

namespace pluvo::forms {

class CheckBox final : public Control {
 public:
  explicit CheckBox(std::u16string name, std::u16string caption = {})
      : Control(ControlKind::checkBox, std::move(name), std::move(caption)) {}

  bool Value() const { return value_; }
  void Value(bool value) {
    if (value_ == value) return;
    set(value_, value);
    Change.raise();
  }
  /// "True" or "False".
  std::u16string valueText() const { return value_ ? u"True" : u"False"; }
  /// Takes "True" and "False", in capitals or not, and numbers, of which 0 is false. Throws Fault
  /// kTypeMismatch for any other text.
  void valueText(const std::u16string& text);

  /// The user ticks the box, or takes the tick away.
  void tick(bool value) {
    if (inReach()) Value(value);
  }
  Event<> Change;

 private:
  bool value_ = false;
};

}  // namespace pluvo::forms
