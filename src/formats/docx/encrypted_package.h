#pragma once

#include "cfb/compound_file.h"
#include "encryption/package_encryption.h"
#include "formats/format.h"

#include <memory>

namespace pluvo::docx {

/// A package that lies encrypted in a compound file, with what tells how, and with what else is there.
class EncryptedPackage {
 public:
  /// Whether bytes look like one.
  static bool isOne(base::ByteSpan bytes);

  /// Finds the key. Throws errors::DocumentError: damaged, unsupported, password.
  EncryptedPackage(base::Bytes compoundFile, const formats::Hint& hint);

  /// The package; throws errors::DocumentError: damaged.
  base::Bytes decrypted() const;
  const formats::SharedKey& key() const { return key_; }
  /// The file with a new version of the package.
  void write(base::ByteSpan package, base::Output& out) const;

 private:
  base::ByteSpan keyBytes() const { return std::get<base::SecretBytes>(*key_).text(); }

  cfb::CompoundFile file_;
  cfb::Id info_ = cfb::kRoot, package_ = cfb::kRoot;
  std::unique_ptr<const encryption::PackageEncryption> encryption_;
  formats::SharedKey key_;
};

}  // namespace pluvo::docx
