#pragma once

#include "events.h"

#include <optional>

namespace pluvo::rtf {

/// The beginning of a group.
struct Opening {
  bool isStarred = false;
  Word word = Word::unknown;
  Extent first;  ///< the word's
};

/// Of the group whose brace was taken last. The tokens go on after the word.
Opening openingOf(Tokens& tokens);

/// A group whose content is told, too.
struct CharacterGroup {
  Character character;
  SkippedGroup group;
};

/// The group of that opening, whose brace stands at `begin`, as one character. It is a shape, a note, a
/// comment, or a picture with the copy for older programs after it. Throws a DocumentError (damaged) where it
/// does not end.
CharacterGroup characterOf(const Tokens& tokens, const Opening& opening, std::size_t begin);
/// A comment from the group with its author's name on. Nothing where none comes.
std::optional<CharacterGroup> commentAt(const Tokens& tokens, std::size_t begin);

/// The number of a note in a text, and the note that follows it or the brace after it.
struct MarkedNote {
  Character character;
  std::size_t noteAt = 0;
};
std::optional<MarkedNote> noteAfter(const Tokens& tokens, const Token& mark, bool mayFollowBrace);

/// The code of a field that begins so; nothing where it has none.
std::optional<Opening> codeOf(const Tokens& tokens, const Opening& field);

/// Text in the code page, and the same in Unicode, which counts.
struct Alternatives {
  Extent first;  ///< between the braces
  std::size_t unicodeAt = 0;
  Opening unicode;
};
std::optional<Alternatives> alternativesOf(const Tokens& tokens, const Opening& opening);

}  // namespace pluvo::rtf
