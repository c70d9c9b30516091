#pragma once

#include "base/bytes.h"
#include "base/secret_text.h"

#include <nettle/nettle-meta.h>
#include <nettle/sha2.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace pluvo::encryption {

using Octets = std::vector<std::uint8_t>;

/// By its name, "SHA-256" or "SHA256"; null for one that is not known.
const nettle_hash* hashNamed(std::string_view name);

/// A hash of something secret, wiped when it goes.
class Digest {
 public:
  Digest() = default;
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;
  ~Digest() { base::wipe(bytes_.data(), bytes_.size()); }

  base::ByteSpan bytes() const { return {bytes_.data(), size_}; }
  /// As many bytes as are asked for: the first of them, or all and then this byte again and again.
  base::SecretBytes sized(std::size_t size, std::uint8_t padding) const;

 private:
  friend class Hashing;
  std::array<std::uint8_t, SHA512_DIGEST_SIZE> bytes_ = {};
  std::size_t size_ = 0;
};

/// Hashes by one algorithm, and leaves nothing in memory.
class Hashing {
 public:
  explicit Hashing(const nettle_hash& algorithm) : algorithm_(algorithm), state_(algorithm.context_size) {}
  Hashing(const Hashing&) = delete;
  Hashing& operator=(const Hashing&) = delete;
  ~Hashing() { base::wipe(state_); }

  /// The digest may be the hashed bytes themselves.
  void of(std::initializer_list<base::ByteSpan> parts, Digest& digest);

  enum class Counter : std::uint8_t { first, last };
  /// The hash of salt and password, and the hash of that and a counter, as many times over as there are
  /// turns.
  void turned(base::ByteSpan salt, base::ByteSpan password, std::uint32_t turns, Counter counter,
              Digest& digest);

 private:
  const nettle_hash& algorithm_;
  Octets state_;
};

/// The keyed hash (HMAC) of a row of bytes.
Octets keyedHash(const nettle_hash& algorithm, base::ByteSpan key, base::ByteSpan bytes);

/// The lowest byte first.
std::array<std::uint8_t, 4> littleEndian(std::uint32_t number);

/// A text as two bytes a unit, the lower first.
base::SecretBytes bytesOf(std::u16string_view text);

/// The same of the oldest formats: one byte of each of the first fifteen characters, of which none is 0.
Octets bytesCounted(std::u16string_view text);

/// Unpredictable bytes.
Octets randomBytes(std::size_t size);

}  // namespace pluvo::encryption
