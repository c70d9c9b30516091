#include "store/known_passwords.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace pluvo::store {

namespace {

/// Some seconds.
constexpr std::uint64_t kMostHashes = 10'000'000;

}  // namespace

void KnownPasswords::add(const base::SecretText& password) {
  const std::lock_guard guard(mutex_);
  std::erase_if(passwords_, [&](const auto& known) { return known.text() == password.text(); });
  passwords_.insert(passwords_.begin(), password.copy());
}

formats::SharedKey KnownPasswords::keyOf(const formats::Lock& lock) const {
  formats::SharedKey key;
  fit(lock.hashes(), [&](const base::SecretText& password) {
    key = lock.keyBy(password);
    return key != nullptr;
  });
  return key;
}

bool KnownPasswords::fit(std::uint64_t hashes,
                         const std::function<bool(const base::SecretText&)>& fits) const {
  std::uint64_t spent = 0;
  for (const base::SecretText& password : all()) {
    spent += hashes;
    if (spent > kMostHashes) break;
    if (fits(password)) return true;
  }
  return false;
}

std::vector<base::SecretText> KnownPasswords::all() const {
  const std::lock_guard guard(mutex_);
  std::vector<base::SecretText> copies;
  for (const base::SecretText& password : passwords_) copies.push_back(password.copy());
  return copies;
}

}  // namespace pluvo::store
