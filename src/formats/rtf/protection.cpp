#include "protection.h"

#include "encryption/kept_password.h"

#include <string>
#include <utility>

namespace pluvo::rtf {

namespace {

using encryption::KeptPassword;

std::uint32_t wordAt(const std::vector<std::uint8_t>& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i > 0; --i) value = value << 8U | bytes[at + i - 1];
  return value;
}

std::uint32_t reversed(std::uint32_t value) {
  return value >> 24U | (value >> 8U & 0xFF00U) | (value << 8U & 0xFF0000U) | value << 24U;
}

std::string algorithmNumbered(std::uint32_t number) {
  switch (number) {
    case 0x8003:
      return "MD5";
    case 0x8004:
      return "SHA-1";
    case 0x800C:
      return "SHA-256";
    case 0x800D:
      return "SHA-384";
    case 0x800E:
      return "SHA-512";
    default:
      return {};
  }
}

std::string base64(const std::uint8_t* bytes, std::size_t count) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t at = 0; at < count; at += 3) {
    const std::size_t some = std::min<std::size_t>(3, count - at);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 3; ++i) value = value << 8U | (i < some ? bytes[at + i] : 0U);
    for (std::size_t i = 0; i < 4; ++i)
      text.push_back(i <= some ? kDigits[value >> (18U - 6U * i) & 63U] : '=');
  }
  return text;
}

/// Numbers of four bytes: version, size, provider, algorithm, turns, length of the hash and of the salt, …
/// The hash follows them, then the salt. Anything else verifies no password.
KeptPassword passwordOf(const std::vector<std::uint8_t>& bytes) {
  constexpr std::size_t kHash = 40;
  KeptPassword password;
  if (bytes.size() < kHash) return password;
  const std::size_t hash = wordAt(bytes, 20);
  const std::size_t salt = wordAt(bytes, 24);
  if (hash > bytes.size() - kHash || salt > bytes.size() - kHash - hash) return password;
  password.algorithm = algorithmNumbered(wordAt(bytes, 12));
  password.turns = wordAt(bytes, 16);
  password.hash = base64(bytes.data() + kHash, hash);
  password.salt = base64(bytes.data() + kHash + hash, salt);
  password.of = KeptPassword::Of::key;
  return password;
}

std::optional<word::WdProtectionType> typeOf(Word word) {
  switch (word) {
    case Word::formprot:
      return word::wdAllowOnlyFormFields;
    case Word::revprot:
      return word::wdAllowOnlyRevisions;
    case Word::annotprot:
      return word::wdAllowOnlyComments;
    case Word::readprot:
      return word::wdAllowOnlyReading;
    default:
      return std::nullopt;
  }
}

/// A protection or a reservation asks for this password. The hash says more than the number, which old
/// programs read.
template <class Asking>
void ask(Asking& asking, const PasswordInGroups& kept) {
  if (kept.hash.empty()) {
    // Programs do not agree on the order of the number's bytes.
    asking.isLiftedBy = [key = *kept.key](const std::u16string& given) {
      const std::uint32_t its = encryption::keyOf(given);
      return its == key || its == reversed(key);
    };
    return;
  }
  KeptPassword password = passwordOf(kept.hash);
  asking.hashes = password.turns;
  if (asking.hashes > encryption::kMostTurns) {
    asking.obstacle =
        "Each password for its protection would have to be hashed more than 1,000,000 times, ten times as "
        "often as word processors do, so none is tried. Lift the protection in a word processor.";
  }
  asking.isLiftedBy = [password = std::move(password)](const std::u16string& given) {
    return password.is(given);
  };
}

}  // namespace

void ProtectionReader::word(const Token& token) {
  const bool isOn = !token.hasNumber || token.number != 0;
  if (token.word == Word::readonlyrecommended) recommendsReading_ = isOn;
  if (token.word == Word::enforceprot) isEnforced_ = isOn;
  const auto type = typeOf(token.word);
  if (!type || !isOn) return;
  // A protection against all but reading is written with that against all but comments, for old programs.
  if (type_ != word::wdAllowOnlyReading) type_ = type;
}

void ProtectionReader::group(const SkippedGroup& group) {
  switch (group.word) {
    case Word::info:
      return info(group);
    case Word::passwordhash:
      forEditing_.hash = bytesIn(group);
      break;
    case Word::writereservhash:
      forChanging_.hash = bytesIn(group);
      break;
    case Word::writereservation: {
      const auto bytes = bytesIn(group);
      if (bytes.size() == 4) forChanging_.key = reversed(wordAt(bytes, 0));
      break;
    }
    default:
      break;
  }
}

void ProtectionReader::info(const SkippedGroup& group) {
  Tokens tokens(bytes_.substr(0, group.bytes.end), group.inside);
  for (Token token = tokens.next(); token.kind != Token::Kind::end; token = tokens.next()) {
    if (token.kind != Token::Kind::word || token.word != Word::password) continue;
    const auto bytes = bytesIn({Word::password, token.extent.end, {0, group.bytes.end}});
    if (bytes.size() == 4 && wordAt(bytes, 0) != 0) forEditing_.key = reversed(wordAt(bytes, 0));
  }
}

/// The bytes that a group has in hexadecimal digits.
std::vector<std::uint8_t> ProtectionReader::bytesIn(const SkippedGroup& group) const {
  constexpr std::size_t kMost = 1024;
  std::vector<std::uint8_t> bytes;
  int high = -1;
  for (std::size_t at = group.inside; at < group.bytes.end && bytes.size() < kMost; ++at) {
    const char c = bytes_[at];
    if (c == '}' || c == '{') break;
    int digit = -1;
    if (c >= '0' && c <= '9') digit = c - '0';
    if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
    if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
    if (digit < 0) continue;
    if (high >= 0) bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
    high = high >= 0 ? -1 : digit;
  }
  return bytes;
}

std::optional<formats::Protection> ProtectionReader::protection() const {
  if (!type_ || !isEnforced_.value_or(true)) return std::nullopt;
  formats::Protection protection{*type_};
  if (forEditing_) ask(protection, forEditing_);
  return protection;
}

std::optional<formats::Reservation> ProtectionReader::reservation() const {
  if (!forChanging_ && !recommendsReading_) return std::nullopt;
  formats::Reservation reservation;
  if (forChanging_) ask(reservation, forChanging_);
  return reservation;
}

}  // namespace pluvo::rtf
