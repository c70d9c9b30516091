#pragma once

#include "base/bytes.h"
#include "base/secret_text.h"
#include "errors/document_error.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace pluvo::encryption {

/// How a document of the binary kind (.doc) is encrypted for its password:
/// - obfuscated: each byte is mixed with one of 16 that the password makes;
/// - RC4 with keys of 40 bits by MD5;
/// - RC4 of the system's library (CryptoAPI), with keys of 40 to 128 bits by SHA-1.
///
/// Each stream is encrypted from its beginning, in stretches with keys of their own, and keeps its length.
class BinaryEncryption {
 public:
  /// Obfuscation, as the header of the file has the password's number (keyOf, kept_password.h).
  static std::unique_ptr<BinaryEncryption> obfuscation(std::uint32_t number);
  /// RC4, from the beginning of the table stream. Throws errors::DocumentError: damaged, or unsupported for
  /// any other way, with its name.
  static std::unique_ptr<BinaryEncryption> from(base::ByteSpan header);

  BinaryEncryption(const BinaryEncryption&) = delete;
  BinaryEncryption& operator=(const BinaryEncryption&) = delete;
  virtual ~BinaryEncryption() = default;

  /// The key of all streams; nothing where the password is another. It costs a few hashes.
  virtual std::optional<base::SecretBytes> keyBy(std::u16string_view password) const = 0;
  /// Decrypts bytes of a stream from a position on, where they lie, or encrypts them: both are one.
  void apply(base::ByteSpan key, std::uint64_t position, std::span<std::uint8_t> bytes) const;
  /// The same under the key of one stretch, however many bytes there are.
  virtual void applyStretch(base::ByteSpan key, std::uint32_t stretch, std::size_t from,
                            std::span<std::uint8_t> bytes) const = 0;
  /// Whether property sets may be encrypted, too, each as a stretch of its own.
  virtual bool coversPropertySets() const { return false; }

  struct Renewed {
    std::vector<std::uint8_t> header;  ///< in the place of the old one, and as long
    base::SecretBytes key;
  };
  /// The same way with a new salt, for the same password: two versions under one key would tell each other.
  /// Obfuscation has no salt, so that its key stays; its header is empty.
  virtual Renewed renewed(std::u16string_view password) const = 0;

 protected:
  BinaryEncryption() = default;
};

}  // namespace pluvo::encryption
