#include "errors/fault.h"
#include "errors/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace pluvo::errors {

namespace {

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

}  // namespace

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

}  // namespace pluvo::errors
