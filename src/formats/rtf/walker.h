#pragma once

#include "characters.h"
#include "events.h"
#include "groups.h"
#include "state.h"
#include "tables.h"
#include "tokens.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace pluvo::rtf {

/// Where the text of a story other than main text begins, and what holds there.
struct StoryBeginning {
  std::size_t at = 0;
  std::uint16_t fallback = 1;
};

/// Walks over the text of a document, or of one story in it, as a word processor shows it. Throws a
/// DocumentError (damaged) for a document that ends inside something other than text, or is too deep.
class Walker {
 public:
  /// Over the main text.
  Walker(std::string_view bytes, Events& events) : tokens_(bytes), events_(events), tables_(own_) {}
  /// Over the text of a group that another story skips.
  Walker(std::string_view bytes, StoryBeginning from, Tables& tables, Events& events)
      : tokens_(bytes, from.at), events_(events), tables_(tables), isStory_(true), fallback_(from.fallback) {}
  Walker(const Walker&) = delete;
  Walker& operator=(const Walker&) = delete;

  void walk();

  const State& state() const { return frames_.back().state; }
  const Tables& tables() const { return tables_; }
  /// Whether the bytes end there in a word that the next byte may change. Known of the places at either end
  /// of the present event.
  bool isOpenEnd(std::size_t at) const { return openEnds_.hold(at); }

 private:
  enum class Role : std::uint8_t { plain, field, code, result, alternatives, rows };
  struct Frame {
    State state;
    Role role = Role::plain;
    bool hasSeparator = false;  ///< of a field
    bool hasEnd = false;
  };

  State& current() { return frames_.back().state; }
  static constexpr std::size_t kDeepest = 10'000;

  void step(const Token& token);
  void open(std::size_t begin);
  void close(std::size_t begin);
  void push(Role role, std::size_t begin);
  void pop(std::size_t end, bool hasBrace = true);
  void enter(Role role, std::size_t begin, const Opening& opening);

  void skip(const Opening& opening, std::size_t begin);
  void tell(const CharacterGroup& told);
  bool field(const Opening& opening, std::size_t begin);
  void separateField(Frame& field, Extent bytes);
  bool closeInField(std::size_t begin);
  void endField(Extent bytes, std::uint8_t closes);
  bool alternatives(const Opening& opening, std::size_t begin);
  bool markedNote(const Token& mark);
  void restIsSkipped(const Token& token);

  void word(const Token& token);
  void text(Extent bytes);
  void byte(const Token& token);
  void numbered(const Token& token);
  void tell(const Character& character);
  bool isText() const;

  Tokens tokens_;
  Events& events_;
  Tables own_;
  Tables& tables_;  ///< those, or the document's
  OpenEnds openEnds_;
  CharacterReader characters_{tokens_, tables_.fonts, openEnds_};
  bool isStory_ = false;
  std::uint16_t fallback_ = 1;  ///< at the beginning
  bool inHeader_ = true;
  std::vector<Frame> frames_;
  std::size_t openFields_ = 0;
  std::size_t noteAt_ = static_cast<std::size_t>(-1);  ///< a note that was told with its mark
};

}  // namespace pluvo::rtf
