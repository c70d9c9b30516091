#pragma once

#include "base/secret_text.h"
#include "forms/form.h"
#include "password_budget.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace pluvo::cli {

/// Answers the driver's password prompt for one document with the passwords of the run, one after the other;
/// after the last, or when the budget of the document or the run is spent, the prompt is cancelled. In quiet
/// mode no other form shows.
class PromptAnswers final : public forms::FormHost {
 public:
  /// How many hashes the next password costs.
  using Cost = std::function<std::uint64_t()>;
  enum class Spent { nothing, document, run };

  /// Passwords and budget outlive it.
  PromptAnswers(const std::vector<base::SecretText>& passwords, PasswordBudget& budget, Cost cost)
      : passwords_(passwords), budget_(budget), cost_(std::move(cost)) {}

  bool hasMore() const { return next_ < passwords_.size(); }
  /// Which budget left passwords untried.
  Spent spent() const { return spent_; }

  void runModal(forms::Form& form) override {
    if (form.Name() != u"frmPassword" || !hasMore()) return;
    const std::uint64_t cost = cost_();
    if (!ofDocument_.take(cost)) {
      spent_ = Spent::document;
    } else if (!budget_.take(cost)) {
      spent_ = Spent::run;
    } else {
      form.get<forms::TextBox>(u"txtPassword").type(passwords_[next_++].text());
      form.get<forms::CommandButton>(u"cmdProceed").press();
    }
  }
  void visibleChanged(forms::Form& /*form*/) override {}
  void repaint(forms::Form& /*form*/) override {}

 private:
  const std::vector<base::SecretText>& passwords_;
  PasswordBudget& budget_;
  PasswordBudget ofDocument_{PasswordBudget::kForDocument};
  Cost cost_;
  std::size_t next_ = 0;
  Spent spent_ = Spent::nothing;
};

}  // namespace pluvo::cli
