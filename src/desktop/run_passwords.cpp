#include "run_passwords.h"

#include <algorithm>

namespace pluvo::desktop {

std::vector<base::SecretText> RunPasswords::begin() {
  typed_.clear();
  tried_.clear();
  return known_->all();
}

std::optional<base::SecretText> RunPasswords::next(const runs::Asked& asked) {
  const About about(asked.path, asked.question);
  for (Typed& each : typed_) each.isWrong = each.isWrong || each.about == about;
  for (std::size_t& tried = tried_[about]; tried < typed_.size();) {
    const Typed& each = typed_[tried++];
    if (!each.isWrong) return each.password.copy();
  }
  return std::nullopt;
}

bool RunPasswords::wasWrong(const runs::Asked& asked) const {
  const About about(asked.path, asked.question);
  return std::ranges::any_of(typed_, [&](const Typed& each) { return each.about == about; });
}

void RunPasswords::typed(const runs::Asked& asked, const base::SecretText& password) {
  const About about(asked.path, asked.question);
  typed_.push_back({about, password.copy()});
  tried_[about] = typed_.size();
}

void RunPasswords::told(const runs::Outcome& outcome) {
  if (outcome.failure && outcome.failure->problem == errors::Problem::password) return;
  for (const Typed& each : typed_) {
    if (each.about.first == outcome.path && !each.isWrong) known_->add(each.password);
  }
}

}  // namespace pluvo::desktop
