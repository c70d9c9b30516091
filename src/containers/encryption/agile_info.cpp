#include "agile_info.h"

#include "base64.h"
#include "encryption/kept_password.h"
#include "package_ways.h"
#include "xml/scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace pluvo::encryption {

namespace {

enum Name : xml::NameId {
  keyData = 1,
  dataIntegrity,
  passwordKey,
  blockSize,
  keyBits,
  hashSize,
  cipherAlgorithm,
  cipherChaining,
  hashAlgorithm,
  saltValue,
  hmacKey,
  hmacValue,
  spinCount,
  verifierInput,
  verifierValue,
  keyValue,
};

const xml::Vocabulary& vocabulary() {
  constexpr xml::NamespaceId kEncryption = 2, kPassword = 3, kNone = xml::kNoNamespace;
  static const std::array<xml::KnownNamespace, 2> spaces = {{
      {"http://schemas.microsoft.com/office/2006/encryption", kEncryption},
      {"http://schemas.microsoft.com/office/2006/keyEncryptor/password", kPassword},
  }};
  static const std::array<xml::KnownName, 16> names = {{
      {kEncryption, "keyData", keyData},
      {kEncryption, "dataIntegrity", dataIntegrity},
      {kPassword, "encryptedKey", passwordKey},
      {kNone, "blockSize", blockSize},
      {kNone, "keyBits", keyBits},
      {kNone, "hashSize", hashSize},
      {kNone, "cipherAlgorithm", cipherAlgorithm},
      {kNone, "cipherChaining", cipherChaining},
      {kNone, "hashAlgorithm", hashAlgorithm},
      {kNone, "saltValue", saltValue},
      {kNone, "encryptedHmacKey", hmacKey},
      {kNone, "encryptedHmacValue", hmacValue},
      {kNone, "spinCount", spinCount},
      {kNone, "encryptedVerifierHashInput", verifierInput},
      {kNone, "encryptedVerifierHashValue", verifierValue},
      {kNone, "encryptedKeyValue", keyValue},
  }};
  static const xml::Vocabulary known(spaces, names);
  return known;
}

constexpr std::size_t kMostSalt = 65'536;

std::string value(const xml::Scanner& scanner, Name name) {
  const xml::Attribute* const attribute = scanner.attribute(name);
  return attribute == nullptr ? std::string() : scanner.value(*attribute);
}

std::uint32_t number(const xml::Scanner& scanner, Name name) {
  const std::string digits = value(scanner, name);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error == std::errc::result_out_of_range) return ~std::uint32_t{0};
  if (error != std::errc() || end != digits.data() + digits.size())
    throw damagedEncryption("a number is missing in the description of its encryption");
  return number;
}

/// Encrypted bytes are whole blocks: the data, filled up.
Octets bytes(const xml::Scanner& scanner, Name name, std::size_t least, std::size_t most) {
  auto bytes = decoded(value(scanner, name));
  if (!bytes || bytes->size() < least || bytes->size() > most)
    throw damagedEncryption("a value is missing in the description of its encryption");
  return *std::move(bytes);
}

Octets blocks(const xml::Scanner& scanner, Name name, std::size_t size, std::size_t block) {
  const std::size_t whole = roundedUp(size, block);
  return bytes(scanner, name, whole, whole);
}

std::string quoted(const std::string& name) {
  constexpr std::size_t kMost = 40;
  return "\"" + name.substr(0, kMost) + "\"";
}

KeyManner mannerIn(const xml::Scanner& scanner) {
  KeyManner manner;
  const std::string algorithm = value(scanner, cipherAlgorithm);
  if (algorithm == "3DES" || algorithm == "3DES_112")
    manner.algorithm = Algorithm::tripleDes;
  else if (algorithm != "AES")
    throw unknownEncryption("the cipher " + quoted(algorithm));
  const std::string chaining = value(scanner, cipherChaining);
  if (chaining == "ChainingModeCFB")
    manner.chaining = Chaining::bytes;
  else if (chaining != "ChainingModeCBC")
    throw unknownEncryption("a cipher chained as " + quoted(chaining));
  const std::string hash = value(scanner, hashAlgorithm);
  manner.hash = hashNamed(hash);
  if (manner.hash == nullptr) throw unknownEncryption("keys of the hash " + quoted(hash));
  const std::uint32_t bits = number(scanner, keyBits);
  manner.keySize = bits / 8;
  if (bits % 8 != 0 || !Cipher::takesKeyOf(manner.algorithm, manner.keySize) ||
      number(scanner, blockSize) != manner.blockSize() ||
      number(scanner, hashSize) != manner.hash->digest_size)
    throw damagedEncryption("keys, blocks or hashes have a length that cannot be");
  manner.salt = bytes(scanner, saltValue, 1, kMostSalt);
  return manner;
}

PasswordLock lockIn(const xml::Scanner& scanner, const KeyManner& package) {
  PasswordLock lock;
  lock.manner = mannerIn(scanner);
  const std::size_t block = lock.manner.blockSize();
  lock.turns = number(scanner, spinCount);
  lock.verifier = blocks(scanner, verifierInput, lock.manner.salt.size(), block);
  lock.verifierHash = blocks(scanner, verifierValue, lock.manner.hash->digest_size, block);
  lock.key = blocks(scanner, keyValue, package.keySize, block);
  return lock;
}

}  // namespace

Octets KeyManner::vectorFor(base::ByteSpan thing) const {
  Digest digest;
  Hashing(*hash).of({salt, thing}, digest);
  return digest.sized(blockSize(), 0x36).text();
}

AgileInfo::AgileInfo(const base::Bytes& xml) : xml_(xml::toUtf8(xml, "EncryptionInfo")) {
  using xml::Token;
  xml::Scanner scanner(xml_.utf8.view, vocabulary(), "EncryptionInfo");
  const auto placeOf = [&](Name name) -> Place {
    const xml::Attribute* const attribute = scanner.attribute(name);
    return {attribute->valueBegin, attribute->valueEnd};
  };
  std::uint64_t turns = 0;
  for (Token token = scanner.next(); token != Token::finish; token = scanner.next()) {
    if (token != Token::start && token != Token::empty) continue;
    const xml::NameId name = scanner.name();
    const bool isTwice =
        (name == keyData && package_.hash != nullptr) || (name == dataIntegrity && !integrityKey_.empty());
    // The package's manner comes first, as the others go by it.
    const bool isEarly = (name == dataIntegrity || name == passwordKey) && package_.hash == nullptr;
    if (isTwice || isEarly) throw damagedEncryption("the description of its encryption is not in order");
    if (name == keyData) {
      package_ = mannerIn(scanner);
      saltPlace_ = placeOf(saltValue);
    } else if (name == dataIntegrity) {
      const std::size_t hash = package_.hash->digest_size;
      integrityKey_ = blocks(scanner, hmacKey, hash, package_.blockSize());
      integrityValue_ = blocks(scanner, hmacValue, hash, package_.blockSize());
      integrityKeyPlace_ = placeOf(hmacKey);
      integrityValuePlace_ = placeOf(hmacValue);
    } else if (name == passwordKey) {
      passwords_.push_back(lockIn(scanner, package_));
      turns += passwords_.back().turns;
      if (turns > kMostTurns) throw tooManyTurns();
    }
  }
  if (package_.hash == nullptr || integrityKey_.empty())
    throw damagedEncryption("the description of its encryption lacks the key data or the integrity");
  if (passwords_.empty()) throw unknownEncryption("keys that have no password, a certificate's for instance");
}

Octets AgileInfo::with(base::ByteSpan salt, base::ByteSpan integrityKey,
                       base::ByteSpan integrityValue) const {
  std::array<std::pair<Place, std::string>, 3> values = {{{saltPlace_, encoded(salt)},
                                                          {integrityKeyPlace_, encoded(integrityKey)},
                                                          {integrityValuePlace_, encoded(integrityValue)}}};
  std::ranges::sort(values, {}, [](const auto& value) { return value.first.begin; });
  Octets utf8;
  std::size_t copied = 0;
  const auto copyTo = [&](std::size_t end) {
    utf8.insert(utf8.end(), xml_.utf8.view.begin() + static_cast<std::ptrdiff_t>(copied),
                xml_.utf8.view.begin() + static_cast<std::ptrdiff_t>(end));
  };
  for (const auto& [place, value] : values) {
    copyTo(place.begin);
    utf8.insert(utf8.end(), value.begin(), value.end());
    copied = place.end;
  }
  copyTo(xml_.utf8.view.size());
  return xml::fromUtf8(utf8, xml_.encoding);
}

}  // namespace pluvo::encryption
