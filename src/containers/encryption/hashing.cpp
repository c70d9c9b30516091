#include "hashing.h"

#include "base/little_endian.h"

#include <nettle/hmac.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace pluvo::encryption {

const nettle_hash* hashNamed(std::string_view name) {
  static constexpr std::array kKnown = {std::pair{std::string_view("MD5"), &nettle_md5},
                                        std::pair{std::string_view("SHA1"), &nettle_sha1},
                                        std::pair{std::string_view("SHA256"), &nettle_sha256},
                                        std::pair{std::string_view("SHA384"), &nettle_sha384},
                                        std::pair{std::string_view("SHA512"), &nettle_sha512}};
  std::string plain(name);
  std::erase(plain, '-');
  const auto* const found =
      std::find_if(kKnown.begin(), kKnown.end(), [&](const auto& each) { return each.first == plain; });
  return found == kKnown.end() ? nullptr : found->second;
}

base::SecretBytes Digest::sized(std::size_t size, std::uint8_t padding) const {
  Octets bytes;
  bytes.reserve(size);
  bytes.assign(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(std::min(size, size_)));
  bytes.resize(size, padding);
  return base::SecretBytes(std::move(bytes));
}

void Hashing::of(std::initializer_list<base::ByteSpan> parts, Digest& digest) {
  algorithm_.init(state_.data());
  for (const base::ByteSpan part : parts) algorithm_.update(state_.data(), part.size(), part.data());
  digest.size_ = algorithm_.digest_size;
  algorithm_.digest(state_.data(), digest.size_, digest.bytes_.data());
}

void Hashing::turned(base::ByteSpan salt, base::ByteSpan password, std::uint32_t turns, Counter counter,
                     Digest& digest) {
  of({salt, password}, digest);
  for (std::uint32_t turn = 0; turn < turns; ++turn) {
    const auto counted = littleEndian(turn);
    if (counter == Counter::first)
      of({counted, digest.bytes()}, digest);
    else
      of({digest.bytes(), counted}, digest);
  }
}

Octets keyedHash(const nettle_hash& algorithm, base::ByteSpan key, base::ByteSpan bytes) {
  Octets outer(algorithm.context_size);
  Octets inner(algorithm.context_size);
  Octets state(algorithm.context_size);
  Octets hash(algorithm.digest_size);
  hmac_set_key(outer.data(), inner.data(), state.data(), &algorithm, key.size(), key.data());
  hmac_update(state.data(), &algorithm, bytes.size(), bytes.data());
  hmac_digest(outer.data(), inner.data(), state.data(), &algorithm, hash.size(), hash.data());
  for (Octets* each : {&outer, &inner, &state}) base::wipe(*each);
  return hash;
}

std::array<std::uint8_t, 4> littleEndian(std::uint32_t number) {
  std::array<std::uint8_t, 4> bytes{};
  base::put(std::span(bytes), 0, number);
  return bytes;
}

base::SecretBytes bytesOf(std::u16string_view text) {
  Octets bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  return base::SecretBytes(std::move(bytes));
}

Octets bytesCounted(std::u16string_view text) {
  constexpr std::size_t kMostCharacters = 15;
  Octets bytes;
  bytes.reserve(kMostCharacters + 1);
  for (const char16_t unit : text.substr(0, kMostCharacters)) {
    const auto low = static_cast<std::uint8_t>(unit & 0xFFU);
    bytes.push_back(low != 0 ? low : static_cast<std::uint8_t>(unit >> 8U));
  }
  return bytes;
}

Octets randomBytes(std::size_t size) {
  constexpr std::size_t kMostAtOnce = 256;
  Octets bytes(size);
  for (std::size_t at = 0; at < size; at += kMostAtOnce) {
    if (getentropy(bytes.data() + at, std::min(kMostAtOnce, size - at)) != 0)
      throw std::system_error(errno, std::generic_category());
  }
  return bytes;
}

}  // namespace pluvo::encryption
