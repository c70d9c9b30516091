#pragma once

#include "events.h"
#include "state.h"
#include "tables.h"

#include <array>
#include <optional>

namespace pluvo::rtf {

/// A character of those bytes.
inline Character characterAt(Extent bytes, char16_t unit, Character::Kind kind = Character::Kind::ordinary) {
  Character character;
  character.kind = kind;
  character.unit = unit;
  character.bytes = bytes;
  return character;
}
/// The mark of a row within a cell.
Character nestedRow(const Token& token, const State& state);

/// Where bytes end in a word that the next byte may change: the last two such places of a walk.
class OpenEnds {
 public:
  void note(std::size_t end) { ends_ = {ends_[1], end}; }
  bool hold(std::size_t at) const { return at == ends_[0] || at == ends_[1]; }

 private:
  std::array<std::size_t, 2> ends_ = {static_cast<std::size_t>(-1), static_cast<std::size_t>(-1)};
};

/// Makes characters of bytes in a code page, and of numbers with their stand-ins for older programs.
class CharacterReader {
 public:
  CharacterReader(Tokens& tokens, const Fonts& fonts, OpenEnds& openEnds)
      : tokens_(tokens), fonts_(fonts), openEnds_(openEnds) {}

  /// Of a word that is one, whatever it stands beside; nothing for others.
  std::optional<Character> ofWord(const Token& token, const State& state) const;
  std::optional<Character> ofSymbol(const Token& token, const State& state) const;
  /// Of the byte that was taken last, and of those that follow it where it is the first of several. Nothing
  /// where it is no character.
  std::optional<Character> ofByte(const Token& token, const State& state) const;

  struct Numbered {
    Character character;
    bool isNone = false;
  };
  /// Of the number that was taken last.
  Numbered ofNumber(const Token& token, const State& state) const;

 private:
  Character ofSeveral(const Token& token, const code_pages::CodePage& page) const;

  Tokens& tokens_;
  const Fonts& fonts_;
  OpenEnds& openEnds_;
};

}  // namespace pluvo::rtf
