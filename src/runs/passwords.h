#pragma once

#include "asking.h"
#include "document_run.h"
#include "formats/key.h"

#include <optional>

namespace pluvo::runs {

/// Tries passwords on one document: first each of the plan's once, then those that are answered. The budgets
/// of the document and of the run, which its jobs share, end the trying of the plan's.
class Passwords {
 public:
  /// All outlive it.
  Passwords(const RunContext& around, Asking& asking) : around_(around), asking_(asking) {}

  /// The key of an encrypted document. Throws errors::DocumentError where its password is not known.
  formats::SharedKey keyOf(const formats::Lock& lock);
  /// Lifts the protection of a document, where it has one. Where no password fits, the message.
  std::optional<Failure> liftProtection(const store::StoredDocument& stored);
  /// Lets a document be replaced that reserves that for those who know a password. Where nobody does, what to
  /// tell.
  std::optional<Failure> release(store::StoredDocument& stored);

 private:
  /// Whether one of the passwords fits; else the message.
  std::optional<Failure> tryAll(Question question, std::uint64_t hashes,
                                const std::function<bool(const base::SecretText&)>& fits);

  const RunContext& around_;
  Asking& asking_;
  PasswordBudget ofDocument_{PasswordBudget::kForDocument};
};

}  // namespace pluvo::runs
