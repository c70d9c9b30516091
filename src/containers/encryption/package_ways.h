#pragma once

#include "encryption/package_encryption.h"

#include <string>

namespace pluvo::encryption {

/// The two ways, from the whole stream "EncryptionInfo". They throw as PackageEncryption::from does.
std::unique_ptr<PackageEncryption> agileEncryption(const base::Bytes& info);
std::unique_ptr<PackageEncryption> standardEncryption(base::Bytes info);

/// How the stream begins, whatever the way.
constexpr std::size_t kVersionSize = 8;
/// The package begins with its length.
constexpr std::size_t kLengthSize = 8;

errors::DocumentError damagedEncryption(const std::string& what);
/// The name of a way, a cipher, ….
errors::DocumentError unknownEncryption(const std::string& what);
/// Where a password takes more hashes than are tried.
errors::DocumentError tooManyTurns();

/// Where a key is not this package's.
errors::DocumentError wrongKey();

/// The length that the package says it has, and that many bytes after, filled up to whole blocks. Throws
/// damaged where it is shorter.
struct Stretch {
  std::uint64_t length;
  base::ByteSpan blocks;
};
Stretch stretchOf(base::ByteSpan encrypted, std::size_t blockSize);
/// A package's length in its place, and room for its blocks.
std::vector<std::uint8_t> roomFor(std::uint64_t length, std::size_t blockSize);

constexpr std::size_t roundedUp(std::size_t size, std::size_t block) {
  return (size + block - 1) / block * block;
}

}  // namespace pluvo::encryption
