#include "agile_info.h"
#include "base/fresh_memory.h"
#include "package_ways.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::encryption {

namespace {

/// The package is encrypted in pieces of this length, each with a vector of its own.
constexpr std::size_t kSegment = 4096;

/// The purpose of a key or a vector.
using Purpose = std::array<std::uint8_t, 8>;
constexpr Purpose kVerifier = {0xFE, 0xA7, 0xD2, 0x76, 0x3B, 0x4B, 0x9E, 0x79};
constexpr Purpose kVerifierHash = {0xD7, 0xAA, 0x0F, 0x6D, 0x30, 0x61, 0x34, 0x4E};
constexpr Purpose kPackageKey = {0x14, 0x6E, 0x0B, 0xE7, 0xAB, 0xAC, 0xD0, 0xD6};
constexpr Purpose kIntegrityKey = {0x5F, 0xB2, 0xAD, 0x01, 0x0C, 0xB9, 0xE1, 0xF6};
constexpr Purpose kIntegrityValue = {0xA0, 0x67, 0x7F, 0x02, 0xB2, 0x2C, 0x84, 0x33};

/// A lock's values, decrypted with a password.
class Opening {
 public:
  Opening(const PasswordLock& lock, std::u16string_view password) : lock_(lock), hashing_(*lock.manner.hash) {
    hashing_.turned(lock.manner.salt, bytesOf(password).text(), lock.turns, Hashing::Counter::first, digest_);
  }

  /// The first bytes of it.
  base::SecretBytes decrypted(const Purpose& purpose, base::ByteSpan encrypted, std::size_t size) {
    Digest key;
    hashing_.of({digest_.bytes(), purpose}, key);
    Octets bytes(encrypted.size());
    const KeyManner& manner = lock_.manner;
    const Octets vector = vectorOf(manner);
    manner.cipher(key.sized(manner.keySize, 0x36).text()).decrypt(vector, encrypted, bytes.data());
    bytes.resize(size);
    return base::SecretBytes(std::move(bytes));
  }

 private:
  /// The salt itself, filled up to a block.
  static Octets vectorOf(const KeyManner& manner) {
    Octets vector = manner.salt;
    vector.resize(manner.blockSize(), 0x36);
    return vector;
  }

  const PasswordLock& lock_;
  Hashing hashing_;
  Digest digest_;
};

class Agile final : public PackageEncryption {
 public:
  explicit Agile(const base::Bytes& info)
      : version_(info.view.begin(), info.view.begin() + kVersionSize),
        info_({info.view.subspan(kVersionSize), info.owner, info.file}) {}

  std::uint64_t hashes() const override {
    std::uint64_t all = 0;
    for (const PasswordLock& lock : info_.passwords()) all += lock.turns + 1;
    return all;
  }

  std::optional<base::SecretBytes> keyBy(std::u16string_view password) const override {
    for (const PasswordLock& lock : info_.passwords()) {
      Opening opening(lock, password);
      const auto verifier = opening.decrypted(kVerifier, lock.verifier, lock.manner.salt.size());
      const std::size_t hashSize = lock.manner.hash->digest_size;
      const auto hash = opening.decrypted(kVerifierHash, lock.verifierHash, hashSize);
      Digest digest;
      Hashing(*lock.manner.hash).of({verifier.text()}, digest);
      if (std::ranges::equal(digest.bytes(), hash.text()))
        return opening.decrypted(kPackageKey, lock.key, info_.package().keySize);
    }
    return std::nullopt;
  }

  base::Bytes decrypted(base::ByteSpan key, base::ByteSpan encrypted) const override {
    const KeyManner& manner = info_.package();
    if (key.size() != manner.keySize) throw wrongKey();
    const auto [length, blocks] = stretchOf(encrypted, manner.blockSize());
    requireIntegrity(key, encrypted);
    const auto plain = base::freshMemory(blocks.size() + 1);
    const Cipher cipher = manner.cipher(key);
    forEachSegment(manner, blocks, [&](std::size_t at, base::ByteSpan segment, base::ByteSpan vector) {
      cipher.decrypt(vector, segment, plain.get() + at);
    });
    plain[static_cast<std::ptrdiff_t>(length)] = base::Bytes::kBehind;
    return {base::ByteSpan(plain.get(), length), plain, nullptr};
  }

  Encrypted encrypted(base::ByteSpan key, base::ByteSpan package) const override {
    KeyManner manner = info_.package();
    if (key.size() != manner.keySize) throw wrongKey();
    manner.salt = randomBytes(manner.salt.size());
    Octets out = roomFor(package.size(), manner.blockSize());
    std::copy(package.begin(), package.end(), out.begin() + kLengthSize);
    const base::ByteSpan blocks = base::ByteSpan(out).subspan(kLengthSize);
    const Cipher cipher = manner.cipher(key);
    forEachSegment(manner, blocks, [&](std::size_t at, base::ByteSpan segment, base::ByteSpan vector) {
      cipher.encrypt(vector, segment, out.data() + kLengthSize + at);
    });
    const std::size_t hashSize = manner.hash->digest_size;
    Octets integrityKey = randomBytes(hashSize);
    Octets integrityValue = keyedHash(*manner.hash, integrityKey, out);
    for (Octets* each : {&integrityKey, &integrityValue}) {
      each->resize(roundedUp(hashSize, manner.blockSize()));
      cipher.encrypt(manner.vectorFor(each == &integrityKey ? kIntegrityKey : kIntegrityValue), *each,
                     each->data());
    }
    Octets info = version_;
    const Octets xml = info_.with(manner.salt, integrityKey, integrityValue);
    info.insert(info.end(), xml.begin(), xml.end());
    return {std::move(info), std::move(out)};
  }

 private:
  template <class Visit>
  static void forEachSegment(const KeyManner& manner, base::ByteSpan blocks, Visit visit) {
    for (std::size_t at = 0, number = 0; at < blocks.size(); at += kSegment, ++number) {
      const Octets vector = manner.vectorFor(littleEndian(static_cast<std::uint32_t>(number)));
      visit(at, blocks.subspan(at, std::min(kSegment, blocks.size() - at)), vector);
    }
  }

  void requireIntegrity(base::ByteSpan key, base::ByteSpan encrypted) const {
    const KeyManner& manner = info_.package();
    const Cipher cipher = manner.cipher(key);
    const auto plain = [&](const Octets& bytes, const Purpose& purpose) {
      Octets decrypted(bytes.size());
      cipher.decrypt(manner.vectorFor(purpose), bytes, decrypted.data());
      decrypted.resize(manner.hash->digest_size);
      return decrypted;
    };
    Octets hashKey = plain(info_.integrityKey(), kIntegrityKey);
    const bool isWhole =
        keyedHash(*manner.hash, hashKey, encrypted) == plain(info_.integrityValue(), kIntegrityValue);
    base::wipe(hashKey);
    if (!isWhole)
      throw damagedEncryption("its contents were changed after they were encrypted, or are not sound");
  }

  Octets version_;
  AgileInfo info_;
};

}  // namespace

std::unique_ptr<PackageEncryption> agileEncryption(const base::Bytes& info) {
  return std::make_unique<Agile>(info);
}

}  // namespace pluvo::encryption
