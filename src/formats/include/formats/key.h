#pragma once

#include "base/secret_text.h"
#include "errors/document_error.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

namespace pluvo::formats {

/// Opens an encrypted document: the password as the user gave it, or a format's key derived from that.
/// The latter opens a new version without being derived again. Its memory is wiped when the last holder goes.
using Key = std::variant<base::SecretText, base::SecretBytes>;
/// Null where no key is known.
using SharedKey = std::shared_ptr<const Key>;

/// An encrypted document that awaits its password.
class Lock {
 public:
  Lock() = default;
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  virtual ~Lock() = default;
  /// How many hashes each password costs.
  virtual std::uint64_t hashes() const = 0;
  /// The key that the password gives; null where the document has another password.
  virtual SharedKey keyBy(const base::SecretText& password) const = 0;
};

/// Tries passwords on a lock: those of a list, or those a user is asked for. Null where none fits. It
/// may throw errors::DocumentError, to say more than that.
using KeyFinder = std::function<SharedKey(const Lock& lock)>;

/// The key of a lock: the one that is known, where there is one, else the one that is found. A password that
/// is known is tried, and something derived is taken as it is. Throws errors::DocumentError password where
/// there is none, or where it is wrong.
SharedKey keyOf(const Lock& lock, const SharedKey& known, const KeyFinder& finder);

/// For a document without a known password.
errors::DocumentError encryptedDocument();

}  // namespace pluvo::formats
