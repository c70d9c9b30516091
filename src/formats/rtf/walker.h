#pragma once

#include "colours.h"
#include "fonts.h"
#include "state.h"
#include "tokens.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

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
  /// How many groups its last bytes close.
  std::uint8_t closes = 0;
  /// The group that it is, if it is one.
  Word group = Word::unknown;

  int units() const { return second == 0 ? 1 : 2; }
};

/// A group that holds no text of the story that is walked.
struct SkippedGroup {
  Word word = Word::unknown;  ///< its first
  std::size_t inside = 0;     ///< behind that
  Extent bytes;
};

/// Is told what a walk meets, front to back. Braces that are part of a character or of a skipped group are
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
  /// The brace that closes the document, or its end.
  virtual void end(std::size_t /*at*/) {}
};

/// What a document says of all its text.
struct Tables {
  Fonts fonts;
  Colours colours;
  /// Where an entry of the table of colours may be put in: at the end of the last one, else where one may
  /// begin.
  std::size_t coloursAt = 0;
  bool hasColours = false;
};

/// Walks over the text of a document, or of one story in it, as a word processor shows it. Throws a
/// DocumentError (damaged) for a document that ends inside something other than text, or is too deep.
class Walker {
 public:
  /// Over the main text.
  Walker(std::string_view bytes, Events& events) : tokens_(bytes), events_(events), tables_(own_) {}
  /// Over the text of a group that main text skips, from behind its first word.
  Walker(std::string_view bytes, std::size_t from, Tables& tables, Events& events)
      : tokens_(bytes, from), events_(events), tables_(tables), isStory_(true) {}
  Walker(const Walker&) = delete;
  Walker& operator=(const Walker&) = delete;

  void walk();

  const State& state() const { return frames_.back().state; }
  const Tables& tables() const { return tables_; }
  /// Whether the bytes end there in a word that the next byte may change; of places at the ends of what is
  /// told now.
  bool isOpenEnd(std::size_t at) const { return at == openEnds_[0] || at == openEnds_[1]; }

  /// Where "{\rtf" stands in a file, behind a byte order mark and blanks; nothing where it does not.
  static std::optional<std::size_t> beginningOf(std::string_view bytes);

 private:
  enum class Role : std::uint8_t { plain, field, code, result, alternatives, rows };
  struct Frame {
    State state;
    Role role = Role::plain;
    bool hasSeparator = false;  ///< of a field
    bool hasEnd = false;
  };
  /// What a group begins with.
  struct Opening {
    bool isStarred = false;
    Word word = Word::unknown;
    Extent first;  ///< the word's
  };

  State& current() { return frames_.back().state; }
  static constexpr std::size_t kDeepest = 10'000;

  void step(const Token& token);
  void open(std::size_t begin);
  void close(std::size_t begin);
  void push(Role role, std::size_t begin);
  void pop(std::size_t end, bool hasBrace = true);
  void enter(Role role, std::size_t begin, const Opening& opening);
  void noteOpenEnd(std::size_t end) { openEnds_ = {openEnds_[1], end}; }
  Opening opening() const;
  Opening opening(Tokens& tokens) const;
  bool isClosing(Tokens& tokens, std::size_t& end) const;

  void skip(const Opening& opening, std::size_t begin);
  void oneCharacter(const Opening& opening, std::size_t begin);
  bool comment(std::size_t begin);
  bool noteBehind(const Token& mark);
  bool field(const Opening& opening, std::size_t begin);
  bool alternatives(const Opening& opening, std::size_t begin);
  void endField(Extent bytes, std::uint8_t closes);
  void restIsSkipped(const Token& token);
  std::optional<std::int32_t> commentNumber(Extent group) const;

  void word(const Token& token);
  void apply(const Token& token);
  void header(const Token& token);
  void symbol(const Token& token);
  void text(Extent bytes);
  void byte(const Token& token);
  void severalBytes(const Token& token, const Decoder& decoder);
  void numbered(const Token& token);
  void put(char16_t unit, Extent bytes);
  void mark(Character::Kind kind, char16_t unit, Extent bytes, std::uint16_t depth = 0);
  void tell(const Character& character);
  bool isText() const;

  Tokens tokens_;
  Events& events_;
  Tables own_;
  Tables& tables_;  ///< those, or the document's
  bool isStory_ = false;
  bool inHeader_ = true;
  std::vector<Frame> frames_;
  std::size_t openFields_ = 0;
  /// The last two.
  std::array<std::size_t, 2> openEnds_ = {static_cast<std::size_t>(-1), static_cast<std::size_t>(-1)};
  std::size_t noteAt_ = static_cast<std::size_t>(-1);  ///< a note that was told with its mark
};

}  // namespace pluvo::rtf
