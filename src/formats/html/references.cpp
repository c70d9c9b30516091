#include "references.h"

#include "base/utf.h"
#include "code_pages/coding.h"
#include "reference_names.h"
#include "tokens.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace pluvo::formats::html {

namespace {

constexpr std::size_t kLongest = 32;
constexpr std::size_t kLongestOpen = 6;  ///< of names that count without a semicolon

struct Named {
  std::string_view name;
  bool countsOpen = false;
  std::array<char32_t, 2> points{};
};

std::uint32_t hexDigit(char c) {
  if (isDigit(c)) return static_cast<std::uint32_t>(c - '0');
  return static_cast<std::uint32_t>((c | 0x20) - 'a') + 10;
}

const std::vector<Named>& names() {
  static const std::vector<Named> all = [] {
    std::vector<Named> made;
    for (const char* at = kReferenceNames; *at != '\0';) {
      const std::size_t length = std::strcspn(at, "!:");
      Named named{{at, length}, at[length] == '!', {}};
      std::size_t point = 0;
      for (at += length + 1; *at != ' '; ++at) {
        if (*at == ',') {
          ++point;
        } else {
          named.points[point] = named.points[point] << 4U | hexDigit(*at);
        }
      }
      ++at;
      made.push_back(named);
    }
    return made;
  }();
  return all;
}

const Named* named(std::string_view name) {
  const auto found = std::ranges::lower_bound(names(), name, {}, &Named::name);
  return found != names().end() && found->name == name ? &*found : nullptr;
}

Reference of(const Named& name, bool isClosed) {
  Reference reference;
  reference.points = name.points;
  reference.count = name.points[1] == 0 ? 1 : 2;
  reference.length = static_cast<std::uint16_t>(1 + name.name.size() + (isClosed ? 1 : 0));
  reference.isClosed = isClosed;
  return reference;
}

bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// Numbers that stand for no character are U+FFFD, those of Windows-1252 its characters.
char32_t pointOf(std::uint32_t number) {
  if (number == 0 || number > 0x10FFFF || base::isSurrogate(number)) return base::kReplacement;
  if (number >= 0x80 && number < 0xA0)
    return code_pages::unitOfWindows1252(static_cast<std::uint8_t>(number));
  return number;
}

Reference numbered(std::string_view text) {
  constexpr std::size_t kMostDigits = 0xF000;
  const bool isHex = text.size() > 2 && (text[2] == 'x' || text[2] == 'X');
  std::size_t at = isHex ? 3 : 2;
  const std::size_t first = at;
  std::uint32_t number = 0;
  while (at < text.size() && at < kMostDigits && (isHex ? isHexDigit(text[at]) : isDigit(text[at]))) {
    constexpr std::uint32_t kTooLarge = 0x110000;
    number = std::min(kTooLarge, number * (isHex ? 16 : 10) + hexDigit(text[at++]));
  }
  if (at == first) return {};
  Reference reference;
  reference.points[0] = pointOf(number);
  reference.count = 1;
  reference.isClosed = at < text.size() && text[at] == ';';
  reference.length = static_cast<std::uint16_t>(at + (reference.isClosed ? 1 : 0));
  return reference;
}

}  // namespace

Reference referenceAt(std::string_view text) {
  if (text.size() < 2) return {};
  if (text[1] == '#') return numbered(text);
  std::size_t length = 0;
  while (length <= kLongest && 1 + length < text.size() &&
         (isLetter(text[1 + length]) || isDigit(text[1 + length])))
    ++length;
  const std::string_view name = text.substr(1, length);
  if (length < text.size() - 1 && text[1 + length] == ';') {
    if (const Named* const found = named(name)) return of(*found, true);
  }
  for (std::size_t open = std::min(length, kLongestOpen); open >= 2; --open) {
    const Named* const found = named(name.substr(0, open));
    if (found != nullptr && found->countsOpen) return of(*found, false);
  }
  return {};
}

std::u16string unitsOfValue(std::string_view value) {
  std::u16string units;
  for (std::size_t at = 0; at < value.size();) {
    if (value[at] == '&') {
      const Reference reference = referenceAt(value.substr(at));
      for (std::size_t i = 0; i < reference.count; ++i) base::appendUtf16(units, reference.points[i]);
      at += reference.length;
      if (reference.count > 0) continue;
    }
    const base::Utf8Character first = base::firstOfUtf8(value.substr(at));
    base::appendUtf16(units, first.bytes == 0 ? base::kReplacement : first.point);
    at += std::max<std::size_t>(first.bytes, 1);
  }
  return units;
}

}  // namespace pluvo::formats::html
