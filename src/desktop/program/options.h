#pragma once

#include <array>
#include <string>
#include <string_view>

namespace pluvo::desktop {

/// All that the program and its manual know of an option.
struct Option {
  char letter;
  std::string_view name;
  std::string_view help;
};

inline constexpr std::array kOptions = {
    Option{'h', "help", "show this help"},
    Option{'v', "version", "show the version"},
};

/// "-h" or "--help".
inline bool isTyped(const Option& option, std::string_view word) {
  return word == std::string{'-', option.letter} || word == "--" + std::string(option.name);
}

}  // namespace pluvo::desktop
