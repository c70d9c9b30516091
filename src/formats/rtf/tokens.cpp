#include "tokens.h"

#include "damage.h"

#include <algorithm>
#include <array>
#include <charconv>
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
  const Word word = wordNamed(bytes.substr(1, end - 1)).word;
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
    case kPlain:
      token.kind = Token::Kind::text;
      while (++at_ < bytes_.size() && classOf(bytes_[at_]) == kPlain) {
      }
      break;
    case kBrace:
      token.kind = first == '{' ? Token::Kind::open : Token::Kind::close;
      ++at_;
      break;
    case kBackslash:
      ++at_;
      token = control(token.extent.begin);
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

/// What the backslash at `begin` begins.
Token Tokens::control(std::size_t begin) {
  Token token;
  token.extent.begin = begin;
  token.kind = Token::Kind::symbol;
  const std::string_view rest = bytes_.substr(at_, 3);
  if (rest.empty() || rest == "'" || (rest.size() == 2 && rest[0] == '\'' && hexDigit(rest[1]) >= 0)) {
    at_ = begin;
    token.kind = Token::Kind::end;
    return token;
  }
  const char first = bytes_[at_];
  if (isLetter(first)) {
    const std::size_t letters = at_;
    while (at_ < bytes_.size() && isLetter(bytes_[at_])) ++at_;
    const KnownWord& known = wordNamed(bytes_.substr(letters, at_ - letters));
    token.kind = Token::Kind::word;
    token.word = known.word;
    token.unit = known.unit;
    takeNumber(token);
    token.isOpenEnded = at_ == bytes_.size() || bytes_[at_] != ' ';
    if (!token.isOpenEnded) ++at_;
    if (token.word == Word::bin && token.number > 0) {
      const auto data = static_cast<std::size_t>(token.number);
      if (data > bytes_.size() - at_) throw damaged("ends inside binary data");
      at_ += data;
      token.isOpenEnded = false;
    }
    return token;
  }
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
  return token;
}

/// A hyphen counts only before a digit. What is too large is the largest number.
void Tokens::takeNumber(Token& token) {
  std::size_t at = at_;
  const bool isNegative = at < bytes_.size() && bytes_[at] == '-';
  if (isNegative) ++at;
  std::int64_t number = 0;
  for (; at < bytes_.size() && isDigit(bytes_[at]); ++at) {
    token.hasNumber = true;
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    number = std::min(number * 10 + (bytes_[at] - '0'), kMost);
  }
  if (!token.hasNumber) return;
  token.number = static_cast<std::int32_t>(isNegative ? -number : number);
  at_ = at;
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
