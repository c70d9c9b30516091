#pragma once

#include "base/bytes.h"
#include "base/secret_text.h"
#include "errors/document_error.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::encryption {

/// How a package of XML is encrypted for its password, as the stream "EncryptionInfo" tells; the package is
/// the stream "EncryptedPackage" beside it. Word processors have two ways:
/// - agile: a random key encrypts the package, and passwords encrypt that key. AES (128, 192 and 256 bits)
///   and triple DES, chained by blocks or bytes; keys by MD5, SHA-1, SHA-256, SHA-384 or SHA-512.
/// - standard: the password is the key. AES without chaining; keys by SHA-1.
class PackageEncryption {
 public:
  /// Throws errors::DocumentError: damaged, or unsupported for any other way, with its name.
  static std::unique_ptr<PackageEncryption> from(base::Bytes info);

  PackageEncryption(const PackageEncryption&) = delete;
  PackageEncryption& operator=(const PackageEncryption&) = delete;
  virtual ~PackageEncryption() = default;

  /// How many hashes each password costs; kMostTurns (kept_password.h) at the most.
  virtual std::uint64_t hashes() const = 0;
  /// The package's key; nothing where the password is another.
  virtual std::optional<base::SecretBytes> keyBy(std::u16string_view password) const = 0;

  /// The package. Throws errors::DocumentError: damaged, also where the encrypted bytes were changed, as
  /// far as its way can tell; password, where the key is another's.
  virtual base::Bytes decrypted(base::ByteSpan key, base::ByteSpan encrypted) const = 0;

  struct Encrypted {
    std::vector<std::uint8_t> info;
    std::vector<std::uint8_t> package;
  };
  /// A new version of the package under the same key, so everybody who could open it still can. All else that
  /// the way leaves to chance is new: otherwise two versions would tell where they differ.
  virtual Encrypted encrypted(base::ByteSpan key, base::ByteSpan package) const = 0;

 protected:
  PackageEncryption() = default;
};

/// For a document whose readers a server decides about.
errors::DocumentError rightsManaged();

}  // namespace pluvo::encryption
