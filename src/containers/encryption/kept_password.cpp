#include "encryption/kept_password.h"

#include "base/secret_text.h"

#include <nettle/base64.h>
#include <nettle/nettle-meta.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

namespace pluvo::encryption {

namespace {

constexpr std::size_t kMostCharacters = 15;

/// The next of a row of 16-bit numbers, each a shift of the one before with feedback.
constexpr std::uint16_t shifted(std::uint16_t number, int times = 1) {
  for (int i = 0; i < times; ++i) {
    constexpr unsigned kFeedback = 0x1021;
    const unsigned twice = number * 2U;
    number = static_cast<std::uint16_t>(twice > 0xFFFF ? twice ^ kFeedback : twice);
  }
  return number;
}

/// The bytes that the key is made of, of which none is 0.
std::vector<std::uint8_t> keyBytes(std::u16string_view password) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(kMostCharacters);
  for (const char16_t unit : password.substr(0, kMostCharacters)) {
    const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
    bytes.push_back(low != 0 ? low : static_cast<std::uint8_t>(unit >> 8U));
  }
  return bytes;
}

/// Each of the seven low bits of a byte brings in a number of its own, eight to a byte, counted from the
/// last.
std::uint16_t highWord(std::span<const std::uint8_t> bytes) {
  constexpr std::uint16_t kOfOneByte = 0xE1F0;
  constexpr std::uint16_t kFirst = 0x1021;
  std::uint16_t word = shifted(kOfOneByte, 8 * (static_cast<int>(bytes.size()) - 1));
  std::uint16_t number = kFirst;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    for (unsigned bit = 0; bit < 8; ++bit, number = shifted(number)) {
      if (bit < 7 && (*byte >> bit & 1U) != 0) word ^= number;
    }
  }
  return word;
}

std::uint16_t lowWord(std::span<const std::uint8_t> bytes) {
  constexpr unsigned kLast = 0xCE4B;
  unsigned word = 0;
  const auto rotate = [&] { word = (word >> 14U & 1U) | (word << 1U & 0x7FFFU); };
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    rotate();
    word ^= *byte;
  }
  rotate();
  return static_cast<std::uint16_t>(word ^ static_cast<unsigned>(bytes.size()) ^ kLast);
}

const nettle_hash* algorithmNamed(std::string_view name) {
  static constexpr std::array kKnown = {std::pair{std::string_view("MD5"), &nettle_md5},
                                        std::pair{std::string_view("SHA-1"), &nettle_sha1},
                                        std::pair{std::string_view("SHA-256"), &nettle_sha256},
                                        std::pair{std::string_view("SHA-384"), &nettle_sha384},
                                        std::pair{std::string_view("SHA-512"), &nettle_sha512}};
  const auto* const found =
      std::find_if(kKnown.begin(), kKnown.end(), [&](const auto& each) { return each.first == name; });
  return found == kKnown.end() ? nullptr : found->second;
}

using Octets = std::vector<std::uint8_t>;

std::optional<Octets> decoded(const std::string& base64) {
  base64_decode_ctx context = {};
  base64_decode_init(&context);
  Octets bytes(BASE64_DECODE_LENGTH(base64.size()));
  std::size_t size = bytes.size();
  if (base64_decode_update(&context, &size, bytes.data(), base64.size(), base64.data()) == 0 ||
      base64_decode_final(&context) == 0)
    return std::nullopt;
  bytes.resize(size);
  return bytes;
}

void append(Octets& bytes, char16_t unit) {
  bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
  bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
}

/// The key's bytes, the lowest first, in hexadecimal digits of two bytes each.
Octets textOf(std::uint32_t key) {
  Octets bytes;
  bytes.reserve(16);
  for (unsigned byte = 0; byte < 4; ++byte, key >>= 8U) {
    for (const unsigned digit : {key >> 4U & 15U, key & 15U}) append(bytes, u"0123456789ABCDEF"[digit]);
  }
  return bytes;
}

Octets textOf(std::u16string_view password) {
  Octets bytes;
  bytes.reserve(password.size() * 2);
  for (const char16_t unit : password) append(bytes, unit);
  return bytes;
}

/// A hash in the making.
class Hashing {
 public:
  explicit Hashing(const nettle_hash& algorithm) : algorithm_(algorithm), state_(algorithm.context_size) {}

  Hashing(const Hashing&) = delete;
  Hashing& operator=(const Hashing&) = delete;
  ~Hashing() { base::wipe(state_); }

  /// The digest may be what is hashed.
  void of(std::span<const std::uint8_t> first, std::span<const std::uint8_t> second, Octets& digest) {
    algorithm_.init(state_.data());
    algorithm_.update(state_.data(), first.size(), first.data());
    algorithm_.update(state_.data(), second.size(), second.data());
    digest.resize(algorithm_.digest_size);
    algorithm_.digest(state_.data(), digest.size(), digest.data());
  }

 private:
  const nettle_hash& algorithm_;
  std::vector<std::uint8_t> state_;
};

}  // namespace

std::uint32_t keyOf(std::u16string_view password) {
  std::vector<std::uint8_t> bytes = keyBytes(password);
  if (bytes.empty()) return 0;
  const std::uint32_t key = static_cast<std::uint32_t>(highWord(bytes)) << 16U | lowWord(bytes);
  base::wipe(bytes);
  return key;
}

bool KeptPassword::is(std::u16string_view given) const {
  const nettle_hash* const known = algorithmNamed(algorithm);
  const auto saltBytes = decoded(salt);
  const auto expected = decoded(hash);
  if (known == nullptr || !saltBytes || !expected || turns > kMostTurns) return false;
  Hashing hashing(*known);
  Octets secret = of == Of::key ? textOf(keyOf(given)) : textOf(given);
  Octets digest;
  hashing.of(*saltBytes, secret, digest);
  base::wipe(secret);
  for (std::uint32_t turn = 0; turn < turns; ++turn) {
    const std::array counted = {static_cast<std::uint8_t>(turn), static_cast<std::uint8_t>(turn >> 8U),
                                static_cast<std::uint8_t>(turn >> 16U),
                                static_cast<std::uint8_t>(turn >> 24U)};
    hashing.of(digest, counted, digest);
  }
  const bool isSame = digest == *expected;
  base::wipe(digest);
  return isSame;
}

}  // namespace pluvo::encryption
