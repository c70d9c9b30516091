#pragma once

#include <string_view>
#include <vector>

namespace pluvo::scanner {

/// A mask over file names, as Windows reads it, but never over a second, short name. Letter case is ignored.
///
///     *    any characters
///     ?    one character; before a dot or at the end also none
///     .    before * or ?, or last: a dot, or the end of the name
///     *.   at the end: names without an extension
///
/// So *.* takes every name, and so does the empty mask.
class Mask {
 public:
  explicit Mask(std::u16string_view mask);
  bool matches(std::u16string_view name) const { return takesAll_ || fits(name); }

 private:
  bool fits(std::u16string_view name) const;

  enum class Kind { unit, anyUnits, oneUnit, dotOrEnd, restWithoutDot };
  struct Token {
    Kind kind;
    char16_t unit;
  };

  std::vector<Token> tokens_;
  bool takesAll_ = false;
};

}  // namespace pluvo::scanner
