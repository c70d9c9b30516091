#pragma once

#include "words.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pluvo::rtf {

struct Extent {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool empty() const { return begin >= end; }
};

struct Token {
  enum class Kind : std::uint8_t {
    end,      ///< of the bytes, or a half of \'hh there
    open,     ///< {
    close,    ///< }
    text,     ///< characters of ASCII that stand for themselves
    byte,     ///< one that the code page says the meaning of, as it is or as \'hh
    word,     ///< a control word with its number and its blank; \bin with its data
    symbol,   ///< a backslash and a character
    nothing,  ///< line ends of the file, and bytes without a meaning
  };

  Kind kind = Kind::end;
  Word word = Word::unknown;
  bool hasNumber = false;
  /// The bytes end in a control word that a letter, digit or blank after it would change.
  bool isOpenEnded = false;
  char16_t unit = 0;  ///< of a word that is a character; the byte; the symbol's character
  std::int32_t number = 0;
  Extent extent;
};

/// The tokens of a document one after the other. Whatever the bytes are, they lie one after the other and
/// make up all of them. Data that reach over the end are a DocumentError (damaged).
class Tokens {
 public:
  explicit Tokens(std::string_view bytes, std::size_t from = 0) : bytes_(bytes), at_(from) {}

  Token next();
  /// The next that is not nothing.
  Token nextThing() {
    Token token = next();
    while (token.kind == Token::Kind::nothing) token = next();
    return token;
  }
  std::size_t at() const { return at_; }
  void goTo(std::size_t at) { at_ = at; }
  std::string_view bytes() const { return bytes_; }

  /// Goes past the brace that closes a group, from anywhere directly in it. False where none does.
  bool skipGroup();
  /// The same, with the place before that brace in the end.
  std::optional<Extent> restOfGroup();

 private:
  void word(Token& token);
  void symbol(Token& token);

  std::string_view bytes_;
  std::size_t at_;
};

/// Where "{\rtf" stands in a file, after a byte order mark and blanks; nothing where it does not.
std::optional<std::size_t> documentBeginning(std::string_view bytes);
/// Whether a group that begins so is more than text with a look of its own.
bool beginsGroup(std::string_view bytes);
/// The number that a text begins with; -1 for none.
std::int32_t numberIn(std::string_view text);

}  // namespace pluvo::rtf
