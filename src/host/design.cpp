#include "design.h"

namespace pluvo::host {

namespace {

template <class Control>
std::unique_ptr<Control> withCaption(const DesignedControl& designed) {
  return std::make_unique<Control>(designed.name, designed.text);
}

std::unique_ptr<forms::Control> label(const DesignedControl& designed) {
  auto label = withCaption<forms::Label>(designed);
  label->IsLink(designed.kind == Kind::link);
  label->BackStyle(forms::BackStyle::transparent);
  return label;
}

std::unique_ptr<forms::Control> textBox(const DesignedControl& designed) {
  auto box = std::make_unique<forms::TextBox>(designed.name);
  box->MultiLine(designed.kind != Kind::text);
  box->ReadOnly(designed.kind == Kind::display);
  box->Text(designed.text);
  return box;
}

std::unique_ptr<forms::Control> comboBox(const DesignedControl& designed) {
  const bool numbers = designed.kind == Kind::numbers;
  auto box = std::make_unique<forms::ComboBox>(
      designed.name, numbers ? forms::ComboBox::Bound::text : forms::ComboBox::Bound::code);
  box->Text(designed.text);
  return box;
}

std::unique_ptr<forms::Control> checkBox(const DesignedControl& designed) {
  auto box = withCaption<forms::CheckBox>(designed);
  box->Value(designed.state == At::ticked);
  box->BackStyle(forms::BackStyle::transparent);
  return box;
}

std::unique_ptr<forms::Control> listBox(const DesignedControl& designed) {
  auto list = std::make_unique<forms::ListBox>(designed.name);
  list->MultiSelect(true);
  return list;
}

std::unique_ptr<forms::Control> ofKind(const DesignedControl& designed) {
  switch (designed.kind) {
    case Kind::label:
    case Kind::link:
      return label(designed);
    case Kind::text:
    case Kind::lines:
    case Kind::display:
      return textBox(designed);
    case Kind::list:
    case Kind::numbers:
      return comboBox(designed);
    case Kind::files:
      return listBox(designed);
    case Kind::tick:
      return checkBox(designed);
    case Kind::button:
      return withCaption<forms::CommandButton>(designed);
    case Kind::picture:
      break;
  }
  return withCaption<forms::Picture>(designed);
}

}  // namespace

std::unique_ptr<forms::Control> make(const DesignedControl& designed) {
  auto control = ofKind(designed);
  control->ControlTipText(designed.tip);
  control->Cell(designed.cell);
  if (designed.fontSize != 0) control->Font({designed.font, designed.fontSize});
  if (designed.state == At::off) {
    control->Enabled(false);
    control->BackStyle(forms::BackStyle::transparent);
  }
  control->Visible(designed.state != At::hidden);
  return control;
}

}  // namespace pluvo::host
