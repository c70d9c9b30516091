#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letters A to Z alone, the same whatever the user's locale.
namespace pluvo::base {

constexpr char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr char asciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

inline std::string asciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = asciiLower(c);
  return lower;
}
inline std::string asciiUpper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = asciiUpper(c);
  return upper;
}

inline bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}
inline bool startsWithIgnoringAsciiCase(std::string_view text, std::string_view beginning) {
  return equalsIgnoringAsciiCase(text.substr(0, beginning.size()), beginning);
}

}  // namespace pluvo::base
