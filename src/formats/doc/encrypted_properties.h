#pragma once

#include "encryption/binary_encryption.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace pluvo::doc {

/// A stretch of the stream that holds encrypted property sets.
struct PropertyStretch {
  std::size_t at = 0;
  std::size_t size = 0;
  std::uint32_t block = 0;  ///< by which its key is made
  bool isList = false;      ///< the list of the others
};

/// Decrypts that stream where it lies, and returns its stretches in order; no two have a byte in common. The
/// rest of the stream is in plain. Throws errors::DocumentError: damaged.
std::vector<PropertyStretch> applyToProperties(const encryption::BinaryEncryption& encryption,
                                               base::ByteSpan key, std::span<std::uint8_t> bytes);

}  // namespace pluvo::doc
