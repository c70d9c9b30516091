#include "passwords.h"

#include "pass_watcher.h"

#include <utility>

namespace pluvo::runs {

Tried tryPasswords(const std::vector<base::SecretText>& passwords, std::uint64_t cost,
                   PasswordBudget& ofDocument, PasswordBudget& ofRun,
                   const std::function<bool(const base::SecretText&)>& lifts) {
  for (const base::SecretText& each : passwords) {
    if (!ofDocument.take(cost)) return Tried::documentSpent;
    if (!ofRun.take(cost)) return Tried::runSpent;
    if (lifts(each)) return Tried::lifted;
  }
  return Tried::wrong;
}

std::optional<Failure> Passwords::tryAll(Question question, std::uint64_t hashes,
                                         const std::function<bool(const base::SecretText&)>& fits) {
  const auto failure = [&](Trouble trouble) {
    return Failure{errors::Problem::password, around_.face.sentenceFor(trouble)};
  };
  const bool isOpening = question == Question::openPassword, lifts = question == Question::password;
  switch (tryPasswords(around_.plan.passwords, hashes, ofDocument_, around_.passwordBudget, fits)) {
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
    const Answer answer = asking_.ask(question, tries);
    if (answer.reply == Answer::Reply::yes) {
      if (fits(answer.password)) return std::nullopt;
      continue;
    }
    if (tries > 0 || !around_.plan.passwords.empty())
      return failure(isOpening ? Trouble::notOpened : lifts ? Trouble::wrongPasswords : Trouble::notReleased);
    return failureFrom(isOpening ? formats::encryptedDocument()
                       : lifts   ? store::protectedAgainstEditing()
                                 : store::reservedForChanging());
  }
}

formats::SharedKey Passwords::keyOf(const formats::Lock& lock) {
  formats::SharedKey key;
  const auto failure = tryAll(Question::openPassword, lock.hashes(), [&](const base::SecretText& password) {
    key = lock.keyBy(password);
    return key != nullptr;
  });
  if (failure) throw errors::DocumentError(failure->problem, failure->message);
  return key;
}

std::optional<Failure> Passwords::liftProtection(const store::StoredDocument& stored) {
  memory::MemoryDocument& document = *stored.document();
  if (document.protection() == word::wdNoProtection) return std::nullopt;
  return tryAll(Question::password, stored.hashesForPassword(),
                [&](const base::SecretText& password) { return document.unprotect(password.text()); });
}

std::optional<Failure> Passwords::release(store::StoredDocument& stored) {
  if (stored.reserved() != store::Reserved::byPassword) return std::nullopt;
  return tryAll(Question::changePassword, stored.hashesForChanging(),
                [&](const base::SecretText& password) { return stored.release(password.text()); });
}

}  // namespace pluvo::runs
