#include "tokens.h"

#include "damage.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace pluvo::rtf {

namespace {

enum Class : std::uint8_t { kPlain, kBrace, kBackslash, kSilent, kTabulator, kCoded };

constexpr auto kClasses = [] {
  std::array<std::uint8_t, 256> classes = {};
  for (std::size_t i = 0; i < 0x20; ++i) classes[i] = kSilent;
  for (std::size_t i = 0x7F; i < 0x100; ++i) classes[i] = kCoded;
  classes['\t'] = kTabulator;
  classes['{'] = classes['}'] = kBrace;
  classes['\\'] = kBackslash;
  return classes;
}();

std::uint8_t classOf(char c) { return kClasses[static_cast<std::uint8_t>(c)]; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::uint64_t kOnes = 0x0101010101010101U;
constexpr std::uint64_t kHighs = kOnes * 0x80U;
constexpr std::size_t kAtOnce = 8;

/// Eight bytes as a number, the first in its lowest byte. Bytes after the end are 0.
std::uint64_t eightAt(std::string_view bytes, std::size_t at) {
  std::uint64_t eight = 0;
  if (bytes.size() - at < kAtOnce) return headOf(bytes.substr(at));
  std::memcpy(&eight, bytes.data() + at, kAtOnce);
  return std::endian::native == std::endian::little ? eight : __builtin_bswap64(eight);
}

/// How many of the bytes in front have no mark in their highest bit.
std::size_t unmarked(std::uint64_t marks) {
  return marks == 0 ? kAtOnce : static_cast<std::size_t>(std::countr_zero(marks)) / 8;
}

/// How many bytes in front are letters.
std::size_t lettersIn(std::uint64_t eight) {
  const std::uint64_t small = (eight | kOnes * 0x20U) & ~kHighs;
  const std::uint64_t fromA = small + kOnes * (0x80U - 'a');
  const std::uint64_t afterZ = small + kOnes * (0x80U - '{');
  return unmarked(~(fromA & ~afterZ & ~eight) & kHighs);
}

/// How many bytes in front are of the class of plain text.
std::size_t plainIn(std::uint64_t eight) {
  const auto is = [&](char c) {
    const std::uint64_t other = eight ^ kOnes * static_cast<std::uint8_t>(c);
    return (other - kOnes) & ~other;
  };
  const std::uint64_t low = (eight - kOnes * 0x20U) & ~eight;
  return unmarked((eight | low | is('{') | is('}') | is('\\') | is('\x7F')) & kHighs);
}

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

}  // namespace

bool beginsGroup(std::string_view bytes) {
  if (!bytes.starts_with('\\')) return false;
  std::size_t end = 1;
  while (end < bytes.size() && isLetter(bytes[end])) ++end;
  const Word word = meaningOf(bytes.substr(1, end - 1)).word;
  return bytes.starts_with("\\*") || isBetween(word, Word::field, Word::lastGroup);
}

std::int32_t numberIn(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  std::int32_t number = -1;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::optional<std::size_t> documentBeginning(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  std::size_t at = bytes.starts_with(kMark) ? kMark.size() : 0;
  constexpr std::size_t kBlanks = 64;
  for (const std::size_t most = at + kBlanks; at < std::min(bytes.size(), most); ++at) {
    if (bytes[at] != ' ' && bytes[at] != '\r' && bytes[at] != '\n' && bytes[at] != '\t') break;
  }
  return bytes.substr(std::min(at, bytes.size())).starts_with("{\\rtf") ? std::optional(at) : std::nullopt;
}

Token Tokens::next() {
  Token token;
  token.extent.begin = at_;
  if (at_ >= bytes_.size()) {
    token.extent = {bytes_.size(), bytes_.size()};
    return token;
  }
  const char first = bytes_[at_];
  switch (classOf(first)) {
    case kPlain: {
      token.kind = Token::Kind::text;
      std::size_t count = kAtOnce;
      std::size_t at = at_;
      for (; count == kAtOnce; at += count) count = plainIn(eightAt(bytes_, at));
      at_ = at;
      break;
    }
    case kBrace:
      token.kind = first == '{' ? Token::Kind::open : Token::Kind::close;
      ++at_;
      break;
    case kBackslash:
      ++at_;
      if (at_ < bytes_.size() && isLetter(bytes_[at_])) {
        word(token);
      } else {
        symbol(token);
      }
      break;
    case kTabulator:
      token.kind = Token::Kind::word;
      token.word = Word::character;
      token.unit = u'\t';
      ++at_;
      break;
    case kCoded:
      token.kind = Token::Kind::byte;
      token.unit = static_cast<std::uint8_t>(first);
      ++at_;
      break;
    default:
      token.kind = Token::Kind::nothing;
      while (++at_ < bytes_.size() && classOf(bytes_[at_]) == kSilent) {
      }
  }
  token.extent.end = at_;
  return token;
}

/// The letters after a backslash, a number and a blank; of \bin the data. A hyphen counts only before a
/// digit. A number that is too large is the largest.
void Tokens::word(Token& token) {
  const char* const end = bytes_.data() + bytes_.size();
  const char* const letters = bytes_.data() + at_;
  std::uint64_t head = eightAt(bytes_, at_);
  const std::size_t first = lettersIn(head);
  const char* at = letters + first;
  if (first < kAtOnce) {
    head &= ~(~std::uint64_t{0} << 8U * first);
  } else {
    while (at < end && isLetter(*at)) ++at;
  }
  const Meaning meaning = meaningOf({letters, static_cast<std::size_t>(at - letters)}, head);
  token.kind = Token::Kind::word;
  token.word = meaning.word;
  token.unit = meaning.unit;
  const bool isNegative = at + 1 < end && *at == '-' && isDigit(at[1]);
  if (isNegative) ++at;
  if (at < end && isDigit(*at)) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
    std::uint64_t number = 0;
    for (; at < end && isDigit(*at); ++at) {
      number = number * 10 + static_cast<std::uint64_t>(*at - '0');
      if (number > kMost) number = kMost;
    }
    token.hasNumber = true;
    token.number = static_cast<std::int32_t>(number);
    if (isNegative) token.number = -token.number;
  }
  token.isOpenEnded = at == end || *at != ' ';
  if (!token.isOpenEnded) ++at;
  at_ = static_cast<std::size_t>(at - bytes_.data());
  if (token.word == Word::bin && token.number > 0) {
    const auto data = static_cast<std::size_t>(token.number);
    if (data > bytes_.size() - at_) throw damaged("ends inside binary data");
    at_ += data;
    token.isOpenEnded = false;
  }
}

/// Any other sign after a backslash.
void Tokens::symbol(Token& token) {
  const std::string_view rest = bytes_.substr(at_, 3);
  if (rest.empty() || rest == "'" || (rest.size() == 2 && rest[0] == '\'' && hexDigit(rest[1]) >= 0)) {
    token.kind = Token::Kind::end;
    --at_;
    return;
  }
  token.kind = Token::Kind::symbol;
  const char first = bytes_[at_];
  ++at_;
  if (first == '\'') {
    const int high = at_ + 1 < bytes_.size() ? hexDigit(bytes_[at_]) : -1;
    const int low = high >= 0 ? hexDigit(bytes_[at_ + 1]) : -1;
    token.kind = low >= 0 ? Token::Kind::byte : Token::Kind::nothing;
    if (low >= 0) {
      token.unit = static_cast<char16_t>(high * 16 + low);
      at_ += 2;
    }
  } else if (first == '\r' || first == '\n') {
    token.kind = Token::Kind::word;
    token.word = Word::par;
  } else if (first == '\t') {
    token.kind = Token::Kind::word;
    token.word = Word::character;
    token.unit = u'\t';
  } else {
    token.unit = static_cast<std::uint8_t>(first);
  }
}

bool Tokens::skipGroup() {
  constexpr auto kStops = [] {
    std::array<bool, 256> stops = {};
    stops['{'] = stops['}'] = stops['\\'] = true;
    return stops;
  }();
  std::size_t depth = 1;
  while (at_ < bytes_.size()) {
    const char c = bytes_[at_];
    if (!kStops[static_cast<std::uint8_t>(c)]) {
      ++at_;
    } else if (c != '\\') {
      ++at_;
      if (c == '{') ++depth;
      if (c == '}' && --depth == 0) return true;
    } else if (bytes_.substr(at_ + 1, 3) == "bin") {
      next();
    } else {
      at_ = std::min(at_ + 2, bytes_.size());
    }
  }
  return false;
}

std::optional<Extent> Tokens::restOfGroup() {
  const std::size_t begin = at_;
  if (!skipGroup()) return std::nullopt;
  return Extent{begin, --at_};
}

}  // namespace pluvo::rtf
