#pragma once

#include "cipher.h"
#include "hashing.h"
#include "xml/encoding.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::encryption {

/// A key's cipher and hash, with the salt that goes with them.
struct KeyManner {
  Algorithm algorithm = Algorithm::aes;
  Chaining chaining = Chaining::blocks;
  std::size_t keySize = 0;
  const nettle_hash* hash = nullptr;
  Octets salt;

  std::size_t blockSize() const { return Cipher::blockSize(algorithm); }
  Cipher cipher(base::ByteSpan key) const { return {algorithm, chaining, key}; }
  /// The vector for one of the things that are encrypted with the salt.
  Octets vectorFor(base::ByteSpan thing) const;
};

/// A password, as it gives the package's key.
struct PasswordLock {
  KeyManner manner;
  std::uint32_t turns = 0;
  Octets verifier, verifierHash, key;  ///< encrypted
};

/// The XML after the version in the stream "EncryptionInfo" of agile encryption.
class AgileInfo {
 public:
  /// Throws errors::DocumentError: damaged, unsupported.
  explicit AgileInfo(const base::Bytes& xml);

  const KeyManner& package() const { return package_; }
  /// One or more.
  const std::vector<PasswordLock>& passwords() const { return passwords_; }
  /// Encrypted: the key of the keyed hash of the encrypted package, and the hash.
  const Octets& integrityKey() const { return integrityKey_; }
  const Octets& integrityValue() const { return integrityValue_; }

  /// The XML with these three in the place of its own, which are as long; all else stays as it is.
  Octets with(base::ByteSpan salt, base::ByteSpan integrityKey, base::ByteSpan integrityValue) const;

 private:
  /// Where a value stands in the XML.
  struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  xml::Utf8Part xml_;
  KeyManner package_;
  std::vector<PasswordLock> passwords_;
  Octets integrityKey_, integrityValue_;
  Place saltPlace_, integrityKeyPlace_, integrityValuePlace_;
};

}  // namespace pluvo::encryption
