#pragma once

#include "tokens.h"

#include <cstdint>
#include <optional>

namespace pluvo::rtf {

/// A character of the text and the bytes that stand for it. The state at their beginning is its own.
struct Character {
  enum class Kind : std::uint8_t {
    ordinary,
    paragraph,
    cell,
    row,
    section,
    fieldBegin,
    fieldSeparator,
    fieldEnd,
  };

  Kind kind = Kind::ordinary;
  char16_t unit = 0;
  char16_t second = 0;  ///< of a surrogate pair; 0 for none
  Extent bytes;
  /// Stays where the character goes.
  Extent kept = {};
  /// Of a cell's and a row's mark, and a paragraph's: the tables it lies in, as the file says.
  std::uint16_t depth = 0;
  /// Of a comment: its number, by which its range is marked.
  std::optional<std::int32_t> comment = std::nullopt;
  /// Characters that should stand after it for programs that do not know it, and do not.
  std::uint16_t missingFallback = 0;
  /// Where those would stand: from its last byte to the next token that is something.
  Extent fallbackAt = {};
  /// The first byte of two, without the second.
  bool isHalf = false;
  /// All up to the brace that closes its group is its own.
  bool fillsGroup = false;
  /// The same, and that brace ends the document or story: no text can come after it.
  bool fillsStory = false;
  /// How many groups its last bytes close.
  std::uint8_t closes = 0;
  /// The group that it is, if it is one.
  Word group = Word::unknown;

  int units() const { return second == 0 ? 1 : 2; }
};

/// A group that holds no text of the story that is walked.
struct SkippedGroup {
  Word word = Word::unknown;  ///< its first
  std::size_t inside = 0;     ///< after that
  Extent bytes;
  std::size_t goesFrom = 0;  ///< of a comment: where the bytes that go with it begin
};

/// Takes the events of a walk, front to back. Braces that are part of a character or of a skipped group are
/// not told, but for those of fields.
class Events {
 public:
  virtual ~Events() = default;
  /// Characters of ASCII, each of one byte.
  virtual void text(Extent bytes) = 0;
  virtual void character(const Character& character) = 0;
  virtual void open(std::size_t /*begin*/) {}
  /// The state is still that of the group. It has no brace where the document ends in it.
  virtual void close(std::size_t /*end*/, bool /*hasBrace*/) {}
  /// A number that is no character, with what should stand after it and does not.
  virtual void missingFallback(std::uint16_t /*count*/, Extent /*at*/) {}
  /// A word that is no character, when the state has it.
  virtual void word(const Token& /*token*/) {}
  virtual void group(const SkippedGroup& /*group*/) {}
  /// The same text in the code page, in front of the one that counts; its bytes lie between its braces.
  virtual void alternative(Extent /*bytes*/) {}
  /// The brace that closes the story, or the document's end.
  virtual void end(std::size_t /*at*/) {}
};

}  // namespace pluvo::rtf
