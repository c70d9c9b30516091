#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letters A to Z alone, the same whatever the user's locale.
namespace pluvo::base {

constexpr char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline std::string asciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = asciiLower(c);
  return lower;
}

inline bool equalsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

}  // namespace pluvo::base
