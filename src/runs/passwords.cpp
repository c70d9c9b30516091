#include "passwords.h"

#include "pass_watcher.h"

#include <utility>

namespace pluvo::runs {

Tried tryPasswords(const std::vector<base::SecretText>& passwords, std::uint64_t cost, PasswordBudget& ofRun,
                   const std::function<bool(const base::SecretText&)>& lifts) {
  PasswordBudget ofDocument(PasswordBudget::kForDocument);
  for (const base::SecretText& each : passwords) {
    if (!ofDocument.take(cost)) return Tried::documentSpent;
    if (!ofRun.take(cost)) return Tried::runSpent;
    if (lifts(each)) return Tried::lifted;
  }
  return Tried::wrong;
}

std::optional<Failure> liftProtection(const store::StoredDocument& stored, const Surroundings& around,
                                      Asking& asking) {
  memory::MemoryDocument& document = *stored.document();
  if (document.protection() == word::wdNoProtection) return std::nullopt;
  const auto failure = [&](Trouble trouble) {
    return Failure{errors::Problem::password, around.face.sentenceFor(trouble)};
  };
  switch (tryPasswords(around.plan.passwords, stored.hashesForPassword(), around.passwordBudget,
                       [&](const base::SecretText& each) { return document.unprotect(each.text()); })) {
    case Tried::lifted:
      return std::nullopt;
    case Tried::documentSpent:
      return failure(Trouble::documentsHashing);
    case Tried::runSpent:
      return failure(Trouble::runsHashing);
    case Tried::wrong:
      break;
  }
  for (std::size_t tries = 0;; ++tries) {
    const Answer answer = asking.ask(Question::password, tries);
    if (answer.reply != Answer::Reply::yes)
      return tries > 0 || !around.plan.passwords.empty() ? failure(Trouble::wrongPasswords)
                                                         : failureFrom(store::protectedAgainstEditing());
    if (document.unprotect(answer.password.text())) return std::nullopt;
  }
}

}  // namespace pluvo::runs
