#pragma once

#include "style.h"
#include "tokens.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace pluvo::formats::html {

/// The rules of a document's style elements, so far as their selectors are one element, one class, an element
/// with a class, or an id. Of equal selectors the later one holds.
class StyleSheet {
 public:
  /// The contents of a style element. After ten thousand rules or a mebibyte the rest is left out.
  void add(std::string_view text);

  /// The style of an element by rules and its own attribute. Lives until the next call.
  const Style& styleOf(std::string_view name, const Attributes& attributes);
  /// The rules' style of every span; new ones have to say otherwise.
  const Style* ofSpan() const;

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Styles = std::unordered_map<std::string, Style, Hash, std::equal_to<>>;

  void addRule(std::string_view selectors, std::string_view declarations);
  void takeOver(Style& style, std::string_view selector) const;
  Style cascade(std::string_view name, const Attributes& attributes) const;

  Styles rules_;
  std::size_t taken_ = 0;  ///< bytes
  Styles known_;           ///< by name, class, id and attribute
  std::string key_;
};

}  // namespace pluvo::formats::html
