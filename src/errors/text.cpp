#include "errors/text.h"

#include "errors/fault.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace pluvo::errors {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

std::u16string_view trimmed(std::u16string_view text) {
  constexpr std::u16string_view kBlanks = u" \t\r\n\v\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The number's text as the standard library reads it; nothing where it is none.
std::optional<std::string> numberIn(std::u16string_view text) {
  std::u16string_view rest = trimmed(text);
  std::string number;
  const auto sign = [&] {
    if (rest.empty() || (rest[0] != u'-' && rest[0] != u'+')) return;
    if (rest[0] == u'-') number += '-';
    rest = trimmed(rest.substr(1));
  };
  const auto digits = [&] {
    std::size_t count = 0;
    for (; !rest.empty() && isDigit(rest[0]); rest.remove_prefix(1), ++count)
      number += static_cast<char>(rest[0]);
    return count;
  };
  sign();
  std::size_t found = digits();
  if (!rest.empty() && rest[0] == u'.') {
    number += '.';
    rest.remove_prefix(1);
    found += digits();
  }
  if (found == 0) return std::nullopt;
  if (!rest.empty() && (rest[0] == u'e' || rest[0] == u'E')) {
    number += 'e';
    rest.remove_prefix(1);
    sign();
    if (digits() == 0) return std::nullopt;
  }
  if (!rest.empty()) return std::nullopt;
  return number;
}

void appendUtf8(std::string& out, char32_t point) {
  const auto byte = [&](char32_t bits) { out += static_cast<char>(bits); };
  if (point < 0x80) {
    byte(point);
  } else if (point < 0x800) {
    byte(0xC0 | point >> 6);
    byte(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    byte(0xE0 | point >> 12);
    byte(0x80 | (point >> 6 & 0x3F));
    byte(0x80 | (point & 0x3F));
  } else {
    byte(0xF0 | point >> 18);
    byte(0x80 | (point >> 12 & 0x3F));
    byte(0x80 | (point >> 6 & 0x3F));
    byte(0x80 | (point & 0x3F));
  }
}

/// The code point that begins at i, and i moved behind it; nothing, and one byte, where there is none.
std::optional<char32_t> pointAt(std::string_view text, std::size_t& i) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const unsigned lead = byte(i);
  const std::size_t start = i++;
  if (lead < 0x80) return lead;
  const std::size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - i < more) return std::nullopt;
  char32_t point = lead & (0x3FU >> more);
  for (std::size_t k = 0; k < more; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return std::nullopt;
    point = point << 6 | (byte(i + k) & 0x3FU);
  }
  const bool shortest = more == 1 || point >= (more == 2 ? 0x800U : 0x10000U);
  if (!shortest || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) return std::nullopt;
  i = start + 1 + more;
  return point;
}

/// Stand for single bytes 0x80 to 0xFF that are no part of a UTF-8 character.
constexpr char32_t kByteEscapes = 0xDC00;

bool isByteEscape(char32_t unit) { return unit >= kByteEscapes + 0x80 && unit <= kByteEscapes + 0xFF; }

/// What is appended for a lone surrogate.
using OnSurrogate = void (*)(std::string& out, char16_t unit);

std::string encoded(std::u16string_view text, OnSurrogate onSurrogate) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char32_t unit = text[i];
    const bool high = unit >= 0xD800 && unit < 0xDC00;
    if (high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10) + (text[++i] - 0xDC00U));
    } else if (unit >= 0xD800 && unit < 0xE000) {
      onSurrogate(out, text[i]);
    } else {
      appendUtf8(out, unit);
    }
  }
  return out;
}

/// What stands for a byte that is no UTF-8.
using OnByte = char32_t (*)(char byte);

std::u16string decoded(std::string_view text, OnByte onByte) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const char byte = text[i];
    const char32_t point = pointAt(text, i).value_or(onByte(byte));
    if (point < 0x10000) {
      out += static_cast<char16_t>(point);
    } else {
      out += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
  }
  return out;
}

}  // namespace

std::u16string decimal(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

bool isNumeric(std::u16string_view text) { return numberIn(text).has_value(); }

std::int16_t toInteger(std::u16string_view text) {
  const auto number = numberIn(text);
  if (!number) throw typeMismatch();
  double value = 0;
  const auto [end, error] = std::from_chars(number->data(), number->data() + number->size(), value);
  // Too large, or too small to tell from 0.
  if (error == std::errc::result_out_of_range && number->find("e-") == std::string::npos) throw overflow();
  value = std::nearbyint(value);  // the default mode: half to even
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
    throw overflow();
  return static_cast<std::int16_t>(value);
}

std::int16_t narrow(std::int32_t value) {
  if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
    throw overflow();
  return static_cast<std::int16_t>(value);
}

std::u16string withParagraphMarks(std::u16string_view text) {
  if (text.find(u'\n') == std::u16string_view::npos) return std::u16string(text);
  std::u16string result;
  result.reserve(text.size());
  char16_t previous = 0;
  for (const char16_t unit : text) {
    if (unit != u'\n') {
      result += unit;
    } else if (previous != u'\r') {
      result += u'\r';
    }
    previous = unit;
  }
  return result;
}

std::string utf8(std::u16string_view text) {
  return encoded(text, [](std::string& out, char16_t) { appendUtf8(out, kReplacement); });
}

std::u16string utf16(std::string_view text) {
  return decoded(text, [](char) -> char32_t { return kReplacement; });
}

std::string nameBytes(std::u16string_view name) {
  return encoded(name, [](std::string& out, char16_t unit) {
    if (isByteEscape(unit)) {
      out += static_cast<char>(unit & 0xFF);
    } else {
      appendUtf8(out, unit);
    }
  });
}

std::u16string nameText(std::string_view bytes) {
  return decoded(bytes,
                 [](char byte) -> char32_t { return kByteEscapes + static_cast<unsigned char>(byte); });
}

}  // namespace pluvo::errors
