#pragma once

#include "base/secret_text.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

namespace pluvo::runs {

/// How many hashes a run may still spend on passwords. Its jobs share it. Hashes are counted, not seconds, so
/// that a run ends the same way on every machine.
class PasswordBudget {
 public:
  /// About a quarter of an hour of one processor: 20,000 passwords kept as word processors keep them.
  static constexpr std::uint64_t kForRun = 2'000'000'000;
  /// Some seconds: 100 such passwords.
  static constexpr std::uint64_t kForDocument = 10'000'000;

  explicit PasswordBudget(std::uint64_t hashes = kForRun) : left_(hashes) {}

  /// False, and nothing is taken, where fewer are left.
  bool take(std::uint64_t hashes) {
    std::uint64_t left = left_.load();
    while (left >= hashes) {
      if (left_.compare_exchange_weak(left, left - hashes)) return true;
    }
    return false;
  }

 private:
  std::atomic<std::uint64_t> left_;
};

enum class Tried : std::uint8_t { lifted, wrong, documentSpent, runSpent };

/// Tries passwords in their order, each for so many hashes, as long as the budgets of the document and of the
/// run last.
Tried tryPasswords(const std::vector<base::SecretText>& passwords, std::uint64_t cost,
                   PasswordBudget& ofDocument, PasswordBudget& ofRun,
                   const std::function<bool(const base::SecretText&)>& lifts);

}  // namespace pluvo::runs
