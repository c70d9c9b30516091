#include "imported_text.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "text/positions.h"
#include "text_decoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <vector>

namespace pluvo::docx {

namespace {

using namespace std::string_view_literals;

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  const char letter = base::asciiLower(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

bool matches(std::string_view bytes, std::size_t at, std::string_view wanted) {
  return base::startsWithIgnoringAsciiCase(bytes.substr(at), wanted);
}

std::size_t findAnyCase(std::string_view bytes, std::string_view wanted, std::size_t from) {
  for (; from + wanted.size() <= bytes.size(); ++from) {
    if (matches(bytes, from, wanted)) return from;
  }
  return std::string_view::npos;
}

/// As UTF-8 where the bytes are, and else a byte a character.
void appendBytes(std::u16string& units, std::string_view bytes) {
  if (base::wellFormedLength(bytes) == bytes.size()) return appendUtf8(units, bytes);
  for (const char c : bytes) units.push_back(static_cast<std::uint8_t>(c));
}

std::u16string ofUtf16(std::string_view bytes, bool bigEndian) {
  std::u16string units;
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const auto one = static_cast<std::uint8_t>(bytes[i]);
    const auto other = static_cast<std::uint8_t>(bytes[i + 1]);
    units.push_back(static_cast<char16_t>(bigEndian ? one << 8U | other : other << 8U | one));
  }
  return units;
}

/// Appends the character that a reference stands for. Returns the place after it.
std::size_t appendReference(std::u16string& units, std::string_view page, std::size_t at) {
  constexpr std::array<std::pair<std::string_view, char16_t>, 6> kNamed = {{{"amp;", u'&'},
                                                                            {"lt;", u'<'},
                                                                            {"gt;", u'>'},
                                                                            {"quot;", u'"'},
                                                                            {"apos;", u'\''},
                                                                            {"nbsp;", u'\u00A0'}}};
  const std::string_view rest = page.substr(at + 1, 12);
  for (const auto& [name, unit] : kNamed) {
    if (!rest.starts_with(name)) continue;
    units.push_back(unit);
    return at + 1 + name.size();
  }
  const bool isHex = rest.starts_with("#x") || rest.starts_with("#X");
  const std::string_view digits = rest.starts_with('#') ? rest.substr(isHex ? 2 : 1) : std::string_view();
  std::uint32_t code = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), code, isHex ? 16 : 10);
  if (read.ec != std::errc() || code == 0 || code > 0x10FFFF) {
    units.push_back(u'&');
    return at + 1;
  }
  appendCodePoint(units, code);
  const std::size_t end = static_cast<std::size_t>(read.ptr - page.data());
  return end < page.size() && page[end] == ';' ? end + 1 : end;
}

/// Elements that stand within a line.
bool isInline(std::string_view name) {
  constexpr std::array kNames = {"a"sv,  "b"sv,      "i"sv,    "u"sv,   "span"sv,
                                 "em"sv, "strong"sv, "font"sv, "sub"sv, "sup"sv};
  return std::any_of(kNames.begin(), kNames.end(), [&](std::string_view known) {
    return known.size() == name.size() && matches(name, 0, known);
  });
}

std::u16string ofPage(std::string_view page) {
  std::u16string units;
  for (std::size_t at = 0; at < page.size();) {
    const std::size_t next = std::min(page.find_first_of("<&\r\n", at), page.size());
    appendBytes(units, page.substr(at, next - at));
    at = next;
    if (at == page.size()) break;
    if (page[at] == '&') {
      at = appendReference(units, page, at);
      continue;
    }
    if (page[at] != '<') {
      units.push_back(u' ');
      at += page.substr(at).starts_with("\r\n") ? 2 : 1;
      continue;
    }
    const std::size_t nameAt = at + (at + 1 < page.size() && page[at + 1] == '/' ? 2 : 1);
    std::size_t nameEnd = nameAt;
    while (nameEnd < page.size() && (isLetter(page[nameEnd]) || isDigit(page[nameEnd]))) ++nameEnd;
    const std::string_view name = page.substr(std::min(nameAt, page.size()), nameEnd - nameAt);
    const bool isOpaque = nameAt == at + 1 && (matches(name, 0, "script") || matches(name, 0, "style"));
    const std::string_view end = page.substr(at).starts_with("<!--") ? "-->"sv : ">"sv;
    std::size_t after = page.find(end, at);
    if (isOpaque) after = findAnyCase(page, name.size() == 6 ? "</script"sv : "</style"sv, at + 1);
    if (after == std::string_view::npos) break;
    if (!isInline(name)) units.push_back(text::kParagraphMark);
    at = isOpaque ? after : after + end.size();
  }
  return units;
}

/// Bytes written as "=20" in a file of several parts.
std::string unquoted(std::string_view file) {
  std::string bytes;
  for (std::size_t at = 0; at < file.size(); ++at) {
    const std::string_view rest = file.substr(at);
    const int high = rest[0] == '=' && rest.size() > 2 ? hexDigit(rest[1]) : -1;
    const int low = high >= 0 ? hexDigit(rest[2]) : -1;
    if (rest.starts_with("=\r\n")) {
      at += 2;
    } else if (rest.starts_with("=\n")) {
      at += 1;
    } else if (low >= 0) {
      bytes.push_back(static_cast<char>(high * 16 + low));
      at += 2;
    } else {
      bytes.push_back(rest[0]);
    }
  }
  return bytes;
}

class RichText {
 public:
  explicit RichText(std::string_view file) : file_(file) {}

  std::u16string read() {
    while (at_ < file_.size()) {
      const char c = file_[at_++];
      if (c == '{') {
        groups_.push_back(groups_.empty() ? Group() : groups_.back());
        if (groups_.size() > kDeepest) break;
      } else if (c == '}') {
        if (!groups_.empty()) groups_.pop_back();
      } else if (c == '\\') {
        control();
      } else if (c != '\r' && c != '\n') {
        put(static_cast<std::uint8_t>(c));
      }
    }
    return std::move(units_);
  }

 private:
  static constexpr std::size_t kDeepest = 10'000;
  struct Group {
    bool isText = true;
    std::int32_t fallback = 1;  ///< characters that stand for one by number
  };

  void put(char16_t unit) {
    if (groups_.empty() || !groups_.back().isText) return;
    if (passedBy_ > 0) {
      --passedBy_;
    } else {
      units_.push_back(unit);
    }
  }

  void control() {
    if (at_ == file_.size()) return;
    if (!isLetter(file_[at_])) return symbol(file_[at_++]);
    const std::size_t begin = at_;
    while (at_ < file_.size() && isLetter(file_[at_])) ++at_;
    const std::string_view word = file_.substr(begin, at_ - begin);
    std::int32_t number = 0;
    const auto read = std::from_chars(file_.data() + at_, file_.data() + file_.size(), number);
    if (read.ec == std::errc()) at_ = static_cast<std::size_t>(read.ptr - file_.data());
    if (at_ < file_.size() && file_[at_] == ' ') ++at_;
    follow(word, number);
  }

  void symbol(char c) {
    if (c == '\'' && at_ + 1 < file_.size()) {
      const int high = hexDigit(file_[at_]);
      const int low = hexDigit(file_[at_ + 1]);
      at_ += 2;
      if (high >= 0 && low >= 0) put(static_cast<char16_t>(high * 16 + low));
    } else if (c == '~') {
      put(u'\u00A0');
    } else if (c == '*' && !groups_.empty()) {
      groups_.back().isText = false;
    } else if (c == '\\' || c == '{' || c == '}') {
      put(static_cast<char16_t>(c));
    }
  }

  void follow(std::string_view word, std::int32_t number) {
    constexpr std::array kOther = {"fonttbl"sv, "colortbl"sv, "stylesheet"sv, "pict"sv, "object"sv, "info"sv};
    if (groups_.empty()) return;
    if (std::find(kOther.begin(), kOther.end(), word) != kOther.end()) {
      groups_.back().isText = false;
    } else if (word == "par" || word == "line" || word == "cell" || word == "row") {
      put(text::kParagraphMark);
    } else if (word == "tab") {
      put(text::kTab);
    } else if (word == "uc") {
      groups_.back().fallback = std::clamp(number, 0, 16);
    } else if (word == "u") {
      put(static_cast<char16_t>(number));
      passedBy_ = groups_.back().fallback;
    }
  }

  std::string_view file_;
  std::size_t at_ = 0;
  std::vector<Group> groups_;
  std::int32_t passedBy_ = 0;
  std::u16string units_;
};

}  // namespace

std::u16string importedText(base::ByteSpan file) {
  constexpr std::size_t kHead = 4096;
  std::string_view bytes(reinterpret_cast<const char*>(file.data()), file.size());
  if (bytes.starts_with("\xFF\xFE")) return ofUtf16(bytes, false);
  if (bytes.starts_with("\xFE\xFF")) return ofUtf16(bytes, true);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  if (bytes.starts_with("{\\rtf")) return RichText(bytes).read();
  const std::string_view head = bytes.substr(0, kHead);
  if (findAnyCase(head, "mime-version:", 0) != std::string_view::npos) return ofPage(unquoted(bytes));
  for (const std::string_view sign : {"<html"sv, "<!doctype"sv, "<body"sv, "<p"sv, "<?xml"sv}) {
    if (findAnyCase(head, sign, 0) != std::string_view::npos) return ofPage(bytes);
  }
  std::u16string units;
  appendBytes(units, bytes);
  return units;
}

}  // namespace pluvo::docx
