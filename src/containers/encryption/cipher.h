#pragma once

#include "base/bytes.h"
#include "base/secret_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace pluvo::encryption {

enum class Algorithm : std::uint8_t { aes, tripleDes };

/// The value that a block is mixed with, so that equal blocks do not look equal.
enum class Chaining : std::uint8_t {
  none,    ///< nothing (ECB)
  blocks,  ///< the block before (CBC)
  bytes,   ///< the bytes before, one after the other (CFB)
};

constexpr std::size_t kLargestBlock = 16;

/// A block cipher with its key, wiped when it goes. Rows of bytes are whole blocks, and may be encrypted and
/// decrypted where they lie. The first block is mixed with a vector of a block's length; without chaining it
/// is empty.
class Cipher {
 public:
  static std::size_t blockSize(Algorithm algorithm) { return algorithm == Algorithm::aes ? 16 : 8; }
  /// Whether keys of the algorithm may have this length in bytes.
  static bool takesKeyOf(Algorithm algorithm, std::size_t bytes);

  Cipher(Algorithm algorithm, Chaining chaining, base::ByteSpan key);
  Cipher(const Cipher&) = delete;
  Cipher& operator=(const Cipher&) = delete;
  ~Cipher();

  void encrypt(base::ByteSpan vector, base::ByteSpan from, std::uint8_t* to) const;
  void decrypt(base::ByteSpan vector, base::ByteSpan from, std::uint8_t* to) const;

 private:
  struct Contexts;
  using Vector = std::array<std::uint8_t, kLargestBlock>;
  static Vector copied(base::ByteSpan vector);

  Algorithm algorithm_;
  Chaining chaining_;
  std::unique_ptr<Contexts> contexts_;
};

}  // namespace pluvo::encryption
