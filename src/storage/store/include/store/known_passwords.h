#pragma once

#include "base/secret_text.h"
#include "formats/key.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

namespace pluvo::store {

/// Passwords that were right once, for as long as the program runs: a folder's documents often share one. May
/// be used from several threads.
class KnownPasswords {
 public:
  /// Once, however often it is given.
  void add(const base::SecretText& password);
  /// The key of a lock where one of them opens it; the one given last is tried first. Null where none does,
  /// or where trying goes on for too long.
  formats::SharedKey keyOf(const formats::Lock& lock) const;
  /// Whether one of them fits; each costs so many hashes. The same order and end.
  bool fit(std::uint64_t hashes, const std::function<bool(const base::SecretText&)>& fits) const;
  /// All of them, the one given last first.
  std::vector<base::SecretText> all() const;

 private:
  mutable std::mutex mutex_;
  std::vector<base::SecretText> passwords_;
};

}  // namespace pluvo::store
