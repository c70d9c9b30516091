#include "walker.h"

#include "damage.h"
#include "text/positions.h"

#include <algorithm>

namespace pluvo::rtf {

using Kind = Token::Kind;

void Walker::walk() {
  if (!isStory_) {
    const std::optional<std::size_t> begin = documentBeginning(tokens_.bytes());
    if (!begin) throw damaged("does not begin as an RTF document does");
    tokens_.goTo(*begin + 1);
  }
  frames_.reserve(64);
  frames_.push_back({});
  current().decoder = tables_.standardDecoder();
  current().fallback = fallback_;
  while (!frames_.empty()) {
    const Token token = tokens_.next();
    if (token.kind == Kind::end) {
      if (!isText()) throw damaged("ends inside a group that is not text");
      // Word processors close what text has left open.
      while (openFields_ > 0) close(token.extent.begin);
      events_.end(token.extent.begin);
      return;
    }
    if (token.kind == Kind::close && frames_.size() == 1) {
      events_.end(token.extent.begin);
      return;
    }
    if (token.isOpenEnded) openEnds_.note(token.extent.end);
    step(token);
  }
}

void Walker::step(const Token& token) {
  switch (token.kind) {
    case Kind::open:
      return open(token.extent.begin);
    case Kind::close:
      return close(token.extent.begin);
    case Kind::text:
      return text(token.extent);
    case Kind::byte:
      return byte(token);
    case Kind::word:
      return word(token);
    case Kind::symbol:
      if (const auto character = characters_.ofSymbol(token, state()); character && isText())
        tell(*character);
      return;
    default:
      return;
  }
}

bool Walker::isText() const {
  return frames_.back().role != Role::alternatives && frames_.back().role != Role::rows;
}

// ---- Groups ----

void Walker::push(Role role, std::size_t begin) {
  if (frames_.size() >= kDeepest) throw damaged("nests groups more than 10,000 deep");
  Frame frame;
  frame.state = state();
  frame.role = role;
  if (role == Role::code || role == Role::result) frame.state.inCode = role == Role::code;
  frames_.push_back(frame);
  events_.open(begin);
}

void Walker::pop(std::size_t end, bool hasBrace) {
  events_.close(end, hasBrace);
  frames_.pop_back();
}

/// Goes on after the first word of a group.
void Walker::enter(Role role, std::size_t begin, const Opening& opening) {
  push(role, begin);
  const std::size_t inside = opening.first.end;
  tokens_.goTo(inside);
  if (tokens_.bytes()[inside - 1] != ' ') openEnds_.note(inside);
}

/// The group whose brace stands at `begin`.
void Walker::open(std::size_t begin) {
  Tokens ahead = tokens_;
  const Opening group = openingOf(ahead);
  if (begin == noteAt_) return skip(group, begin);
  if (isSkipped(group.word)) {
    if (group.word == Word::atnid && isText()) {
      if (const auto comment = commentAt(tokens_, begin)) return tell(*comment);
    }
    return skip(group, begin);
  }
  if (!isText()) return skip(group, begin);
  if (isOneCharacter(group.word)) return tell(characterOf(tokens_, group, begin));
  if (group.word == Word::field && field(group, begin)) return;
  if (group.word == Word::upr) {
    if (!alternatives(group, begin)) skip(group, begin);
    return;
  }
  if (group.word == Word::nesttableprops) return enter(Role::rows, begin, group);
  if (Frame& around = frames_.back();
      around.role == Role::field && group.word == Word::fldrslt && !around.hasSeparator) {
    separateField(around, {begin, group.first.end});
    return enter(Role::result, begin, group);
  }
  if (group.isStarred && group.word != Word::ud) return skip(group, begin);
  push(Role::plain, begin);
}

void Walker::skip(const Opening& opening, std::size_t begin) {
  tokens_.goTo(opening.first.begin);
  if (!tokens_.skipGroup()) throw damaged("ends inside a group that is not text");
  const Extent bytes{begin, tokens_.at()};
  const Extent content{std::min(opening.first.end, bytes.end - 1), bytes.end - 1};
  if (!isStory_ && tables_.group(opening.word, tokens_.bytes(), content, inHeader_))
    current().decoder = tables_.standardDecoder();
  events_.group({opening.word, content.begin, bytes});
}

void Walker::tell(const CharacterGroup& told) {
  tokens_.goTo(told.character.bytes.end);
  tell(told.character);
  events_.group(told.group);
}

bool Walker::alternatives(const Opening& opening, std::size_t begin) {
  const auto found = alternativesOf(tokens_, opening);
  if (!found) return false;
  push(Role::alternatives, begin);
  events_.alternative(found->first);
  enter(Role::plain, begin, found->unicode);
  return true;
}

/// A word that should begin a group, and does not.
void Walker::restIsSkipped(const Token& token) {
  const std::optional<Extent> rest = tokens_.restOfGroup();
  if (!rest) throw damaged("ends inside a group that is not text");
  const Extent bytes{token.extent.begin, rest->end};
  if (isOneCharacter(token.word)) {
    Character character = characterAt(bytes, text::kPicture);
    character.group = token.word;
    character.fillsGroup = true;
    character.fillsStory = frames_.size() == 1;
    tell(character);
  }
  events_.group({token.word, token.extent.end, bytes});
}

// ---- Fields ----

bool Walker::field(const Opening& opening, std::size_t begin) {
  const auto code = codeOf(tokens_, opening);
  if (!code) return false;
  if (++openFields_ > State::kDeepest) throw damaged("nests fields more than 1,000 deep");
  tell(characterAt({begin, code->first.end}, text::kFieldBegin, Character::Kind::fieldBegin));
  push(Role::field, begin);
  enter(Role::code, begin, *code);
  return true;
}

void Walker::separateField(Frame& field, Extent bytes) {
  field.hasSeparator = true;
  tell(characterAt(bytes, text::kFieldSeparator, Character::Kind::fieldSeparator));
}

/// The brace at `begin`, which may be the end of the bytes.
void Walker::close(std::size_t begin) {
  const std::size_t end = tokens_.at();
  Frame& frame = frames_.back();
  if (frame.role == Role::code || frame.role == Role::result) {
    if (closeInField(begin)) return;
  } else if (frame.role == Role::field && !frame.hasEnd) {
    endField({begin, end}, 1);
  }
  pop(end, end > begin);
}

/// Closes a field together with its code or result, where nothing lies between the braces; or goes on from
/// the code into the result. False where neither is so.
bool Walker::closeInField(std::size_t begin) {
  const std::size_t after = tokens_.at();
  Frame& field = frames_[frames_.size() - 2];
  Tokens ahead = tokens_;
  const Token next = ahead.nextThing();
  if (next.kind == Kind::close && frames_.size() > 2) {
    field.hasEnd = true;
    endField({begin, next.extent.end}, 2);
    pop(after);
    pop(next.extent.end);
    tokens_.goTo(next.extent.end);
    return true;
  }
  if (frames_.back().role != Role::code || next.kind != Kind::open) return false;
  const Opening result = openingOf(ahead);
  if (result.word != Word::fldrslt) return false;
  separateField(field, {begin, result.first.end});
  pop(after);
  enter(Role::result, after, result);
  return true;
}

void Walker::endField(Extent bytes, std::uint8_t closes) {
  --openFields_;
  Character character = characterAt(bytes, text::kFieldEnd, Character::Kind::fieldEnd);
  character.closes = bytes.empty() ? std::uint8_t{0} : closes;
  tell(character);
}

// ---- Characters ----

void Walker::word(const Token& token) {
  if (inHeader_ && !isStory_ && tables_.header(token, frames_.size()))
    current().decoder = tables_.standardDecoder();
  if (token.word == Word::unknown) return events_.word(token);
  if (frames_.back().role == Role::rows) {
    if (token.word == Word::nestrow) tell(nestedRow(token, state()));
    return;
  }
  if (frames_.back().role == Role::alternatives) return;
  if (const auto character = characters_.ofWord(token, state())) return tell(*character);
  switch (token.word) {
    case Word::u:
      return numbered(token);
    case Word::chftn:
      if (isStory_ || !markedNote(token)) events_.word(token);
      return;
    case Word::pict:
    case Word::fonttbl:
    case Word::colortbl:
    case Word::stylesheet:
    case Word::info:
      return restIsSkipped(token);
    default:
      current().take(token, tables_);
      events_.word(token);
  }
}

bool Walker::markedNote(const Token& mark) {
  const auto note = noteAfter(tokens_, mark, frames_.size() > 1);
  if (!note) return false;
  noteAt_ = note->noteAt;
  tell(note->character);
  return true;
}

void Walker::text(Extent bytes) {
  if (!isText()) return;
  inHeader_ = false;
  if (state().inCode || tables_.fonts.decoder(state().decoder).kind != Decoder::Kind::symbol)
    return events_.text(bytes);
  for (std::size_t at = bytes.begin; at < bytes.end; ++at) {
    const auto byte = static_cast<std::uint8_t>(tokens_.bytes()[at]);
    tell(characterAt({at, at + 1}, static_cast<char16_t>(0xF000 + byte)));
  }
}

void Walker::byte(const Token& token) {
  if (!isText()) return;
  if (const auto character = characters_.ofByte(token, state())) tell(*character);
}

void Walker::numbered(const Token& token) {
  const auto [character, isNone] = characters_.ofNumber(token, state());
  if (!isNone) return tell(character);
  if (character.missingFallback > 0) events_.missingFallback(character.missingFallback, character.fallbackAt);
}

void Walker::tell(const Character& character) {
  inHeader_ = false;
  events_.character(character);
}

}  // namespace pluvo::rtf
