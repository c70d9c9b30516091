#include "encryption/kept_password.h"

#include "base/secret_text.h"
#include "base64.h"
#include "hashing.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace pluvo::encryption {

namespace {

/// The next of a row of 16-bit numbers, each a shift of the one before with feedback.
constexpr std::uint16_t shifted(std::uint16_t number, int times = 1) {
  for (int i = 0; i < times; ++i) {
    constexpr unsigned kFeedback = 0x1021;
    const unsigned twice = number * 2U;
    number = static_cast<std::uint16_t>(twice > 0xFFFF ? twice ^ kFeedback : twice);
  }
  return number;
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

/// The key's bytes, the lowest first, in hexadecimal digits.
base::SecretText textOf(std::uint32_t key) {
  std::u16string digits;
  digits.reserve(8);
  for (unsigned byte = 0; byte < 4; ++byte, key >>= 8U) {
    for (const unsigned digit : {key >> 4U & 15U, key & 15U}) digits += u"0123456789ABCDEF"[digit];
  }
  return base::SecretText(std::move(digits));
}

}  // namespace

std::uint32_t keyOf(std::u16string_view password) {
  std::vector<std::uint8_t> bytes = bytesCounted(password);
  if (bytes.empty()) return 0;
  const std::uint32_t key = static_cast<std::uint32_t>(highWord(bytes)) << 16U | lowWord(bytes);
  base::wipe(bytes);
  return key;
}

bool KeptPassword::is(std::u16string_view given) const {
  const nettle_hash* const known = hashNamed(algorithm);
  const auto saltBytes = decoded(salt);
  const auto expected = decoded(hash);
  if (known == nullptr || !saltBytes || !expected || turns > kMostTurns) return false;
  const base::SecretBytes secret = of == Of::key ? bytesOf(textOf(keyOf(given)).text()) : bytesOf(given);
  Digest digest;
  Hashing(*known).turned(*saltBytes, secret.text(), turns, Hashing::Counter::last, digest);
  return std::ranges::equal(digest.bytes(), *expected);
}

}  // namespace pluvo::encryption
