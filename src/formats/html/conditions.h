#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::formats::html {

/// What a comment or a declaration says to Word, which reads some of them as markup.
struct Condition {
  enum class Kind : std::uint8_t {
    none,
    hidden,    ///< "[if E]>…<![endif]": its content is markup where E holds
    revealed,  ///< what follows it is markup where E holds
    end,
  };
  Kind kind = Kind::none;
  bool holds = false;
  std::size_t contentFrom = 0;  ///< of a hidden one, in the bytes given …
  std::size_t contentTo = 0;    ///< … up to "<![endif]"
};

/// Of what stands between the marks of a comment.
Condition conditionOfComment(std::string_view inside);
/// Of what stands between "<!" and ">".
Condition conditionOfDeclaration(std::string_view inside);

}  // namespace pluvo::formats::html
