#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::encryption {

/// The number that word processors make of a password. The oldest formats keep this alone; newer ones keep a
/// hash of it. Only the first fifteen characters count, each by one byte.
std::uint32_t keyOf(std::u16string_view password);

/// A password as a document keeps it: hashed, salted, and the hash hashed again many times over.
struct KeptPassword {
  enum class Of { key, password };

  std::string algorithm;  ///< "MD5", "SHA-1", "SHA-256", "SHA-384" or "SHA-512"
  std::string salt;       ///< in Base64, as the hash
  std::string hash;
  std::uint32_t turns = 0;
  Of of = Of::key;

  /// Whether this is the password; costs as many hashes as there are turns. A password kept in a way that is
  /// not known, or with more than kMostTurns, verifies no password. Wipes the values made of the password
  /// given.
  bool is(std::u16string_view given) const;
};

/// Ten times what word processors make, a third of a second. A password kept with more is not tried.
inline constexpr std::uint32_t kMostTurns = 1'000'000;

}  // namespace pluvo::encryption
