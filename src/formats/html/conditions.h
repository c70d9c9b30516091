#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::formats::html {

/// The meaning of a comment or declaration to Word, which reads some of them as markup.
struct Condition {
  enum class Kind : std::uint8_t {
    none,
    hidden,    ///< "[if E]>…<![endif]": its content is markup where E holds
    revealed,  ///< the text after it is markup where E holds
    end,
  };
  Kind kind = Kind::none;
  bool holds = false;
  std::size_t contentFrom = 0;  ///< of a hidden one, in the bytes given …
  std::size_t contentTo = 0;    ///< … up to "<![endif]"
};

/// For the text between the marks of a comment.
Condition conditionOfComment(std::string_view inside);
/// For the text between "<!" and ">".
Condition conditionOfDeclaration(std::string_view inside);

}  // namespace pluvo::formats::html
