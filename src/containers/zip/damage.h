#pragma once

#include "errors/document_error.h"

#include <string>
#include <string_view>

namespace pluvo::zip {

/// A member's name for a message: names are in no certain encoding, and as long as their maker liked.
inline std::string shown(std::string_view name) {
  constexpr std::size_t kLongest = 100;
  std::string text = "\"";
  for (const char c : name.substr(0, kLongest)) text.push_back(c >= ' ' && c <= '~' ? c : '?');
  return text + (name.size() > kLongest ? "…\"" : "\"");
}

inline errors::DocumentError damaged(const std::string& what) {
  return {errors::Problem::damaged, "The document's ZIP archive is damaged: " + what +
                                        "; get an intact copy, or let a word processor repair and save it."};
}

}  // namespace pluvo::zip
