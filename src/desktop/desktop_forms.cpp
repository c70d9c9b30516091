#include "desktop_forms.h"

#include "dialog/frmFAR.h"
#include "dialog/frmProcessing.h"

#include <QTimer>
#include <utility>

namespace pluvo::desktop {

namespace {

constexpr std::u16string_view kDialog = dialog::frmFAR::kName;
constexpr std::u16string_view kConfirmation = dialog::frmProcessing::kName;

}  // namespace

void DesktopForms::runModal(forms::Form& form) {
  if (ended_) return;
  if (form.Name() == kDialog) dialog_ = &form;
  shown_.runModal(form);
  if (dialog_ == &form) dialog_ = nullptr;
}

void DesktopForms::visibleChanged(forms::Form& form) {
  if (form.Name() != kConfirmation || ended_) return shown_.visibleChanged(form);
  // The next block is being looked for before anybody sees the window go.
  if (!form.Visible())
    return static_cast<void>(QTimer::singleShot(0, this, &DesktopForms::endFinishedConfirmation));
  const bool first = confirmation_ == nullptr;
  confirmation_ = &form;
  blockAwaits();
  shown_.visibleChanged(form);
  if (first) confirmingChanged();
}

void DesktopForms::endFinishedConfirmation() {
  if (confirmation_ == nullptr || confirmation_->Visible() || isWorking()) return;
  shown_.visibleChanged(*std::exchange(confirmation_, nullptr));
  confirmingChanged();
}

void DesktopForms::endConfirmation() {
  if (confirmation_ != nullptr) confirmation_->close();
}

void DesktopForms::end() {
  endConfirmation();
  ended_ = true;
  if (confirmation_ != nullptr) shown_.visibleChanged(*std::exchange(confirmation_, nullptr));
  if (dialog_ != nullptr) dialog_->Hide();
}

}  // namespace pluvo::desktop
