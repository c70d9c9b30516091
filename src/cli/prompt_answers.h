#pragma once

#include "forms/form.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pluvo::cli {

/// Answers the driver's password prompt with the passwords of the run, one after the other; behind the last
/// the prompt is cancelled. In quiet mode no other form shows.
class PromptAnswers final : public forms::FormHost {
 public:
  /// They outlive it.
  explicit PromptAnswers(const std::vector<std::u16string>& passwords) : passwords_(passwords) {}

  bool hasMore() const { return next_ < passwords_.size(); }

  void runModal(forms::Form& form) override {
    if (form.Name() != u"frmPassword" || !hasMore()) return;
    form.get<forms::TextBox>(u"txtPassword").type(passwords_[next_++]);
    form.get<forms::CommandButton>(u"cmdProceed").press();
  }
  void visibleChanged(forms::Form& /*form*/) override {}
  void repaint(forms::Form& /*form*/) override {}

 private:
  const std::vector<std::u16string>& passwords_;
  std::size_t next_ = 0;
};

}  // namespace pluvo::cli
