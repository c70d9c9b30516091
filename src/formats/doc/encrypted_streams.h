#pragma once

#include "base/bytes.h"
#include "cfb/compound_file.h"
#include "encryption/binary_encryption.h"
#include "formats/format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace pluvo::doc {

/// Where the streams lie that a password encrypts; without Data two of them.
struct StreamIds {
  cfb::Id document = cfb::kRoot;
  cfb::Id tables = cfb::kRoot;
  std::optional<cfb::Id> data = {};
};

/// The streams of an encrypted document in plain, and the way back. In front of each some bytes are never
/// encrypted: what tells how the document is.
class EncryptedStreams {
 public:
  /// Whether its information block says that a document is encrypted.
  static bool areOf(base::ByteSpan document);

  /// Finds the key. Throws errors::DocumentError: damaged, unsupported, password.
  EncryptedStreams(const cfb::CompoundFile& file, const StreamIds& ids, const formats::Hint& hint);

  /// One of the streams, in plain.
  const base::Bytes& plain(cfb::Id id) const;
  /// The password: each version has a key of its own.
  const formats::SharedKey& key() const { return password_; }

  /// The property sets that are encrypted with the document, in plain. Throws errors::DocumentError: damaged.
  std::vector<base::Bytes> propertySets(const cfb::CompoundFile& file) const;

  /// Writes the file with new contents for streams, given in plain. Their unencrypted beginnings are as they
  /// were. Under a new salt everything that the key covers is encrypted anew, so that no two versions share a
  /// key. Obfuscation has no salt: under it the same password makes the same key, and two versions tell where
  /// they differ.
  void rewrite(const cfb::CompoundFile& file, std::span<const cfb::Change> changes, base::Output& out) const;

 private:
  struct Stream {
    cfb::Id id;
    std::size_t open;  ///< so many bytes in front are not encrypted
    base::Bytes plain;
  };

  std::shared_ptr<const encryption::BinaryEncryption> encryption_;
  formats::SharedKey password_;
  base::SecretBytes key_;
  std::vector<Stream> streams_;
};

}  // namespace pluvo::doc
