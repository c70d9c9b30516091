#pragma once

#include "forms_qt/forms.h"

#include <QObject>
#include <functional>

namespace pluvo::desktop {

/// Forms as Qt shows them. But the confirmation stays from block to block, and once the program ends nothing
/// new is shown.
class DesktopForms final : public QObject, public forms::FormHost {
 public:
  explicit DesktopForms(forms_qt::QtForms& shown) : shown_(shown) {}

  void runModal(forms::Form& form) override;
  void visibleChanged(forms::Form& form) override;
  void repaint(forms::Form& form) override { shown_.repaint(form); }

  bool confirming() const { return confirmation_ != nullptr; }
  void endConfirmation();
  /// Work has ended: where it has put no other block before the user, the confirmation goes.
  void endFinishedConfirmation();
  /// Hides the dialog, so that its caller returns.
  void end();

  /// Whether the work under way may find another block.
  std::function<bool()> isWorking = [] { return false; };
  std::function<void()> blockAwaits = [] {};
  std::function<void()> confirmingChanged = [] {};

 private:
  forms_qt::QtForms& shown_;
  forms::Form* dialog_ = nullptr;
  /// From the first block that awaits a decision until no more does.
  forms::Form* confirmation_ = nullptr;
  bool ended_ = false;
};

}  // namespace pluvo::desktop
