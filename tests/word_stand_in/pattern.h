#pragma once

#include "model/model.h"
#include "text/positions.h"
#include "text/visible.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pluvo::stand_in {

struct Criteria {
  std::u16string text;
  bool matchCase = false;
  bool wholeWord = false;
  bool prefix = false;
  bool suffix = false;
};

/// A find text as Word reads it outside wildcards: `^` begins a code, a straight quote stands for the
/// typographic ones as well and the reverse, a blank for a non-breaking one as well. Everything else is
/// literal.
///
/// Whole word has no effect on a text of more than one word.
class Pattern {
 public:
  /// Error 5692 where a code is unknown.
  explicit Pattern(const Criteria& criteria);

  /// The first match in [from, to), or the last where it is to be searched backwards. None leaves its table
  /// cell. A pattern without text matches nothing.
  std::optional<text::Span> find(const model::Model& model, text::View view, text::Span span,
                                 bool forward) const;

 private:
  enum class Kind { unit, any, digit, letter, blanks, section };
  struct Token {
    Kind kind;
    char16_t unit = 0;
  };
  /// The characters that the view shows, and where each stands.
  struct Visible {
    std::u16string units;
    std::vector<text::Position> positions;
  };

  std::size_t code(std::u16string_view rest);
  std::size_t numbered(std::u16string_view rest, std::u16string_view digits);
  bool fits(const model::Model& model, const Visible& visible, const Token& token, std::size_t at) const;
  /// How far a match from there reaches; nothing when there is none.
  std::optional<std::size_t> matchAt(const model::Model& model, const Visible& visible, std::size_t at) const;
  bool standsAsAsked(const Visible& visible, std::size_t from, std::size_t to) const;

  Criteria criteria_;
  std::vector<Token> tokens_;
};

}  // namespace pluvo::stand_in
