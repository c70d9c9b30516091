#include "base/fresh_memory.h"
#include "base/little_endian.h"
#include "cipher.h"
#include "encryption/kept_password.h"
#include "hashing.h"
#include "package_ways.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pluvo::encryption {

namespace {

using base::get32;

constexpr std::uint32_t kTurns = 50'000;
constexpr std::size_t kSalt = 16, kVerifier = 16, kHash = 20, kEncryptedHash = 32;

/// Places in the stream after the version, and in the header that follows its own size.
constexpr std::size_t kHeaderSize = 8, kHeader = 12;
namespace header {
constexpr std::size_t kFlags = 0, kCipher = 8, kHashing = 12, kKeyBits = 16, kLeast = 32;
constexpr std::uint32_t kIsExternal = 0x10;
}  // namespace header

std::size_t keySizeOf(std::uint32_t cipher, std::uint32_t bits) {
  constexpr std::array<std::pair<std::uint32_t, std::uint32_t>, 3> kAes = {
      {{0x660E, 128}, {0x660F, 192}, {0x6610, 256}}};
  for (const auto& [id, itsBits] : kAes) {
    if (cipher == id && (bits == itsBits || bits == 0)) return itsBits / 8;
    if (cipher == id) throw damagedEncryption("its cipher has no keys of " + std::to_string(bits) + " bits");
  }
  if (cipher == 0x6801) throw unknownEncryption("RC4, as documents of the binary kind are");
  throw unknownEncryption("cipher " + std::to_string(cipher));
}

/// The password and the salt beside it make the key. Without the password neither can change, so a save
/// writes only the package anew.
class Standard final : public PackageEncryption {
 public:
  explicit Standard(base::Bytes info) : info_(std::move(info)) {
    const base::ByteSpan bytes = info_.view;
    const auto require = [&](std::uint64_t size) {
      if (bytes.size() < size) throw damagedEncryption("the description of its encryption is cut off");
    };
    require(kHeader);
    const std::uint64_t headerSize = get32(bytes, kHeaderSize);
    if (headerSize < header::kLeast)
      throw damagedEncryption("the description of its encryption is too short");
    require(kHeader + headerSize);
    const base::ByteSpan its = bytes.subspan(kHeader);
    if ((get32(its, header::kFlags) & header::kIsExternal) != 0)
      throw unknownEncryption("an extension (an external provider)");
    keySize_ = keySizeOf(get32(its, header::kCipher), get32(its, header::kKeyBits));
    if (const std::uint32_t hashing = get32(its, header::kHashing); hashing != 0x8004 && hashing != 0)
      throw unknownEncryption("keys of hash " + std::to_string(hashing));
    const std::uint64_t verifier = kHeader + headerSize;
    require(verifier + 4 + kSalt + kVerifier + 4 + kEncryptedHash);
    const base::ByteSpan rest = bytes.subspan(verifier);
    if (get32(rest, 0) != kSalt || get32(rest, 4 + kSalt + kVerifier) != kHash)
      throw damagedEncryption("its salt or hash has a length that cannot be");
    salt_ = rest.subspan(4, kSalt);
    verifier_ = rest.subspan(4 + kSalt, kVerifier);
    verifierHash_ = rest.subspan(4 + kSalt + kVerifier + 4, kEncryptedHash);
  }

  std::uint64_t hashes() const override { return kTurns; }

  std::optional<base::SecretBytes> keyBy(std::u16string_view password) const override {
    base::SecretBytes key = derived(password);
    if (!fits(key.text())) return std::nullopt;
    return key;
  }

  base::Bytes decrypted(base::ByteSpan key, base::ByteSpan encrypted) const override {
    requireFitting(key);
    const auto [length, blocks] = stretchOf(encrypted, kLargestBlock);
    const auto plain = base::freshMemory(blocks.size() + 1);
    Cipher(Algorithm::aes, Chaining::none, key).decrypt({}, blocks, plain.get());
    plain[static_cast<std::ptrdiff_t>(length)] = base::Bytes::kBehind;
    return {base::ByteSpan(plain.get(), length), plain, nullptr};
  }

  Encrypted encrypted(base::ByteSpan key, base::ByteSpan package) const override {
    requireFitting(key);
    Octets out = roomFor(package.size(), kLargestBlock);
    std::copy(package.begin(), package.end(), out.begin() + kLengthSize);
    const base::ByteSpan blocks = base::ByteSpan(out).subspan(kLengthSize);
    Cipher(Algorithm::aes, Chaining::none, key).encrypt({}, blocks, out.data() + kLengthSize);
    return {Octets(info_.view.begin(), info_.view.end()), std::move(out)};
  }

 private:
  base::SecretBytes derived(std::u16string_view password) const {
    constexpr std::size_t kPadded = 64;
    Hashing hashing(nettle_sha1);
    Digest digest;
    hashing.turned(salt_, bytesOf(password).text(), kTurns, Hashing::Counter::first, digest);
    hashing.of({digest.bytes(), littleEndian(0)}, digest);
    Octets key;
    key.reserve(2 * kHash);
    for (const std::uint8_t padding : {std::uint8_t{0x36}, std::uint8_t{0x5C}}) {
      std::array<std::uint8_t, kPadded> padded{};
      padded.fill(padding);
      for (std::size_t i = 0; i < kHash; ++i) padded[i] ^= digest.bytes()[i];
      Digest half;
      hashing.of({padded}, half);
      base::wipe(padded.data(), padded.size());
      key.insert(key.end(), half.bytes().begin(), half.bytes().end());
    }
    key.resize(keySize_);
    return base::SecretBytes(std::move(key));
  }

  bool fits(base::ByteSpan key) const {
    if (key.size() != keySize_) return false;
    const Cipher cipher(Algorithm::aes, Chaining::none, key);
    std::array<std::uint8_t, kVerifier> verifier{};
    std::array<std::uint8_t, kEncryptedHash> hash{};
    cipher.decrypt({}, verifier_, verifier.data());
    cipher.decrypt({}, verifierHash_, hash.data());
    Digest digest;
    Hashing(nettle_sha1).of({verifier}, digest);
    return std::ranges::equal(digest.bytes(), base::ByteSpan(hash).first(kHash));
  }

  void requireFitting(base::ByteSpan key) const {
    if (!fits(key)) throw wrongKey();
  }

  base::Bytes info_;
  std::size_t keySize_ = 0;
  base::ByteSpan salt_, verifier_, verifierHash_;
};

}  // namespace

std::unique_ptr<PackageEncryption> standardEncryption(base::Bytes info) {
  return std::make_unique<Standard>(std::move(info));
}

}  // namespace pluvo::encryption
