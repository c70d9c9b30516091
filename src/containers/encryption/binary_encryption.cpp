#include "encryption/binary_encryption.h"

#include "base/little_endian.h"
#include "encryption/kept_password.h"
#include "hashing.h"
#include "package_ways.h"

#include <nettle/arcfour.h>
#include <nettle/md5.h>
#include <nettle/sha1.h>

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace pluvo::encryption {

namespace {

constexpr std::size_t kSalt = 16, kVerifier = 16, kStretch = 512;

class Obfuscation final : public BinaryEncryption {
 public:
  explicit Obfuscation(std::uint32_t number) : number_(number) {}

  std::optional<base::SecretBytes> keyBy(std::u16string_view password) const override {
    if (keyOf(password) != number_) return std::nullopt;
    return mixture(password);
  }

  /// Zero bytes, and bytes that would become zero, stay: so the gaps of a file cannot tell the key.
  void applyStretch(base::ByteSpan key, std::uint32_t stretch, std::size_t from,
                    std::span<std::uint8_t> bytes) const override {
    std::uint64_t position = std::uint64_t{stretch} * kStretch + from;
    for (std::uint8_t& byte : bytes) {
      const std::uint8_t with = key[position++ % key.size()];
      if (byte != 0 && byte != with) byte ^= with;
    }
  }

  Renewed renewed(std::u16string_view password) const override { return {{}, mixture(password)}; }

 private:
  base::SecretBytes mixture(std::u16string_view password) const {
    constexpr std::array<std::uint8_t, 15> kFilling = {0xBB, 0xFF, 0xFF, 0xBA, 0xFF, 0xFF, 0xB9, 0x80,
                                                       0x00, 0xBE, 0x0F, 0x00, 0xBF, 0x0F, 0x00};
    constexpr std::size_t kLength = 16;
    constexpr int kTurn = 7;
    Octets key = bytesCounted(password);
    key.reserve(kLength);
    for (std::size_t i = 0; key.size() < kLength; ++i) key.push_back(kFilling[i % kFilling.size()]);
    for (std::size_t i = 0; i < kLength; ++i)
      key[i] = std::rotl(static_cast<std::uint8_t>(key[i] ^ number_ >> (i % 2 == 0 ? 16U : 24U)), kTurn);
    return base::SecretBytes(std::move(key));
  }

  std::uint32_t number_;
};

/// RC4, however the keys are made. The header ends with a salt, and with a verifier and its hash under the
/// key of the first stretch.
class Rc4 : public BinaryEncryption {
 public:
  Rc4(base::ByteSpan header, const nettle_hash& hash, std::size_t verifierHash)
      : header_(header.begin(), header.end()), hash_(hash), verifierHash_(verifierHash) {}

  std::optional<base::SecretBytes> keyBy(std::u16string_view password) const override {
    base::SecretBytes key = keyWith(salt(), password);
    const std::size_t hashAt = verifierHash_;
    std::array<std::uint8_t, kVerifier + SHA1_DIGEST_SIZE> known{};
    const auto verifier = base::ByteSpan(header_).subspan(verifierAt(), kVerifier);
    const auto hash = base::ByteSpan(header_).subspan(hashAt, hash_.digest_size);
    std::copy(hash.begin(), hash.end(), std::copy(verifier.begin(), verifier.end(), known.begin()));
    apply(key.text(), 0, std::span(known).first(kVerifier + hash_.digest_size));
    Digest digest;
    Hashing(hash_).of({base::ByteSpan(known).first(kVerifier)}, digest);
    const auto expected = base::ByteSpan(known).subspan(kVerifier, hash_.digest_size);
    if (!std::ranges::equal(digest.bytes(), expected)) return std::nullopt;
    return key;
  }

  void applyStretch(base::ByteSpan key, std::uint32_t stretch, std::size_t from,
                    std::span<std::uint8_t> bytes) const override {
    std::array<std::uint8_t, kStretch> passed{};
    arcfour_ctx context;
    const base::SecretBytes its = stretchKey(key, stretch);
    arcfour_set_key(&context, its.text().size(), its.text().data());
    arcfour_crypt(&context, from, passed.data(), passed.data());
    arcfour_crypt(&context, bytes.size(), bytes.data(), bytes.data());
    base::wipe(&context, sizeof context);
  }

  Renewed renewed(std::u16string_view password) const override {
    Octets header = header_;
    const Octets salt = randomBytes(kSalt);
    std::copy(salt.begin(), salt.end(), header.begin() + static_cast<std::ptrdiff_t>(saltAt()));
    base::SecretBytes key = keyWith(salt, password);
    Octets known = randomBytes(kVerifier);
    Digest digest;
    Hashing(hash_).of({known}, digest);
    known.insert(known.end(), digest.bytes().begin(), digest.bytes().end());
    apply(key.text(), 0, known);
    const auto from = known.begin() + kVerifier;
    std::copy(known.begin(), from, header.begin() + static_cast<std::ptrdiff_t>(verifierAt()));
    std::copy(from, known.end(), header.begin() + static_cast<std::ptrdiff_t>(verifierHash_));
    return {std::move(header), std::move(key)};
  }

 protected:
  virtual base::SecretBytes keyWith(base::ByteSpan salt, std::u16string_view password) const = 0;
  virtual base::SecretBytes stretchKey(base::ByteSpan key, std::uint32_t stretch) const = 0;
  /// The salt comes right before the verifier.
  virtual std::size_t verifierAt() const = 0;

 private:
  std::size_t saltAt() const { return verifierAt() - kSalt; }
  base::ByteSpan salt() const { return base::ByteSpan(header_).subspan(saltAt(), kSalt); }

  Octets header_;
  const nettle_hash& hash_;
  std::size_t verifierHash_;
};

void requireSize(base::ByteSpan header, std::uint64_t size) {
  if (header.size() < size) throw damagedEncryption("the description of its encryption is cut off");
}

class Rc4ByMd5 final : public Rc4 {
 public:
  static constexpr std::size_t kSize = 4 + kSalt + kVerifier + MD5_DIGEST_SIZE;
  explicit Rc4ByMd5(base::ByteSpan header) : Rc4(header.first(kSize), nettle_md5, kVerifierAt + kVerifier) {}

 protected:
  base::SecretBytes keyWith(base::ByteSpan salt, std::u16string_view password) const override {
    Hashing hashing(nettle_md5);
    Digest digest;
    hashing.of({bytesOf(password).text()}, digest);
    const base::SecretBytes first = digest.sized(kKey, 0);
    Octets mixed;
    mixed.reserve(kTimes * (kKey + kSalt));
    for (int i = 0; i < kTimes; ++i) {
      mixed.insert(mixed.end(), first.text().begin(), first.text().end());
      mixed.insert(mixed.end(), salt.begin(), salt.end());
    }
    hashing.of({mixed}, digest);
    base::wipe(mixed);
    return digest.sized(kKey, 0);
  }

  base::SecretBytes stretchKey(base::ByteSpan key, std::uint32_t stretch) const override {
    Digest digest;
    Hashing(nettle_md5).of({key, littleEndian(stretch)}, digest);
    return digest.sized(MD5_DIGEST_SIZE, 0);
  }

  std::size_t verifierAt() const override { return kVerifierAt; }

 private:
  static constexpr std::size_t kVerifierAt = 4 + kSalt;
  static constexpr std::size_t kKey = 5;
  static constexpr int kTimes = 16;
};

class Rc4BySha1 final : public Rc4 {
 public:
  bool coversPropertySets() const override { return true; }

  /// Where the salt's length stands, after the header that the system's library has.
  Rc4BySha1(base::ByteSpan header, std::size_t saltSize, std::uint32_t bits)
      : Rc4(header.first(saltSize + kAfterSalt), nettle_sha1, saltSize + kAfterSalt - SHA1_DIGEST_SIZE),
        verifierAt_(saltSize + 4 + kSalt),
        keySize_(bits / 8) {}

  /// The bytes from that place on.
  static constexpr std::size_t kAfterSalt = 4 + kSalt + kVerifier + 4 + SHA1_DIGEST_SIZE;

 protected:
  base::SecretBytes keyWith(base::ByteSpan salt, std::u16string_view password) const override {
    Digest digest;
    Hashing(nettle_sha1).of({salt, bytesOf(password).text()}, digest);
    return digest.sized(SHA1_DIGEST_SIZE, 0);
  }

  /// Keys of 40 bits are filled up with zeros.
  base::SecretBytes stretchKey(base::ByteSpan key, std::uint32_t stretch) const override {
    constexpr std::size_t kShort = 5, kFilledUp = 16;
    Digest digest;
    Hashing(nettle_sha1).of({key, littleEndian(stretch)}, digest);
    base::SecretBytes its = digest.sized(keySize_, 0);
    if (keySize_ != kShort) return its;
    Octets filled = its.copy().text();
    filled.resize(kFilledUp);
    return base::SecretBytes(std::move(filled));
  }

  std::size_t verifierAt() const override { return verifierAt_; }

 private:
  std::size_t verifierAt_;
  std::size_t keySize_;
};

std::unique_ptr<BinaryEncryption> rc4BySha1(base::ByteSpan header) {
  constexpr std::size_t kLibrarySize = 8, kLibrary = 12, kLeast = 32;
  constexpr std::uint32_t kRc4 = 0x6801, kFewestBits = 40, kMostBits = 128;
  requireSize(header, kLibrary + kLeast);
  const std::uint64_t size = base::get32(header, kLibrarySize);
  if (size < kLeast) throw damagedEncryption("the description of its encryption is too short");
  if (const auto cipher = base::get32(header, kLibrary + 8); cipher != kRc4)
    throw unknownEncryption("cipher " + std::to_string(cipher));
  std::uint32_t bits = base::get32(header, kLibrary + 16);
  if (bits == 0) bits = kFewestBits;
  if (bits < kFewestBits || bits > kMostBits || bits % 8 != 0)
    throw damagedEncryption("RC4 has no keys of " + std::to_string(bits) + " bits");
  const std::uint64_t salt = kLibrary + size;
  requireSize(header, salt + Rc4BySha1::kAfterSalt);
  const std::size_t at = static_cast<std::size_t>(salt);
  if (base::get32(header, at) != kSalt || base::get32(header, at + 4 + kSalt + kVerifier) != SHA1_DIGEST_SIZE)
    throw damagedEncryption("its salt or hash has a length that cannot be");
  return std::make_unique<Rc4BySha1>(header, at, bits);
}

}  // namespace

void BinaryEncryption::apply(base::ByteSpan key, std::uint64_t position,
                             std::span<std::uint8_t> bytes) const {
  while (!bytes.empty()) {
    const std::size_t from = position % kStretch;
    const std::size_t count = std::min(bytes.size(), kStretch - from);
    applyStretch(key, static_cast<std::uint32_t>(position / kStretch), from, bytes.first(count));
    position += count;
    bytes = bytes.subspan(count);
  }
}

std::unique_ptr<BinaryEncryption> BinaryEncryption::obfuscation(std::uint32_t number) {
  return std::make_unique<Obfuscation>(number);
}

std::unique_ptr<BinaryEncryption> BinaryEncryption::from(base::ByteSpan header) {
  requireSize(header, 4);
  const unsigned major = base::get16(header, 0);
  const unsigned minor = base::get16(header, 2);
  if (major == 1 && minor == 1) {
    requireSize(header, Rc4ByMd5::kSize);
    return std::make_unique<Rc4ByMd5>(header);
  }
  if (major >= 2 && major <= 4 && minor == 2) return rc4BySha1(header);
  throw unknownEncryption("a way of version " + std::to_string(major) + "." + std::to_string(minor));
}

}  // namespace pluvo::encryption
