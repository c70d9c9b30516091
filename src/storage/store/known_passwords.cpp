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
  std::uint64_t hashes = 0;
  for (const base::SecretText& password : all()) {
    hashes += lock.hashes();
    if (hashes > kMostHashes) break;
    if (auto key = lock.keyBy(password)) return key;
  }
  return nullptr;
}

std::vector<base::SecretText> KnownPasswords::all() const {
  const std::lock_guard guard(mutex_);
  std::vector<base::SecretText> copies;
  for (const base::SecretText& password : passwords_) copies.push_back(password.copy());
  return copies;
}

}  // namespace pluvo::store
