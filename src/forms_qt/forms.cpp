#include "forms_qt/forms.h"

#include "form_window.h"

namespace pluvo::forms_qt {

QtForms::QtForms(forms::MessageBoxes& boxes) : boxes_(boxes) {}

QtForms::~QtForms() { Q_ASSERT(windows_.empty()); }

FormWindow& QtForms::shownBy(forms::Form& form) {
  if (const auto there = windows_.find(&form); there != windows_.end()) return *there->second;
  const auto window = std::make_shared<FormWindow>(*this, form);
  form.changed.handledBy([window] { window->formChanged(); });
  windows_[&form] = window.get();
  return *window;
}

void QtForms::runModal(forms::Form& form) { shownBy(form).run(); }

void QtForms::visibleChanged(forms::Form& form) {
  if (form.Visible()) return shownBy(form).show();
  if (const auto there = windows_.find(&form); there != windows_.end()) there->second->hide();
}

void QtForms::repaint(forms::Form& form) {
  if (const auto there = windows_.find(&form); there != windows_.end()) there->second->repaint();
}

QWidget* QtForms::windowOf(const forms::Form& form) const {
  const auto there = windows_.find(&form);
  return there == windows_.end() ? nullptr : there->second->window();
}

void QtForms::admissionChanged() {
  for (const auto& [form, window] : windows_) window->admissionChanged();
}

}  // namespace pluvo::forms_qt
