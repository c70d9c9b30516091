#include "groups.h"

#include "damage.h"
#include "text/positions.h"

#include <algorithm>

namespace pluvo::rtf {

using Kind = Token::Kind;

namespace {

std::optional<std::int32_t> commentNumber(std::string_view bytes, Extent group) {
  Tokens tokens(bytes.substr(0, group.end), group.begin);
  constexpr int kNear = 32;
  for (int i = 0; i < kNear; ++i) {
    const Token token = tokens.next();
    if (token.kind == Kind::end) break;
    if (token.kind != Kind::word || token.word != Word::atnref) continue;
    return numberIn(bytes.substr(token.extent.end, group.end - token.extent.end));
  }
  return std::nullopt;
}

char16_t unitOf(Word group) {
  switch (group) {
    case Word::shp:
      return 8;
    case Word::footnote:
      return 2;
    case Word::annotation:
      return text::kCommentReference;
    default:
      return text::kPicture;
  }
}

}  // namespace

Opening openingOf(Tokens& tokens) {
  Opening opening;
  Token token = tokens.nextThing();
  if (token.kind == Kind::symbol && token.unit == u'*') {
    opening.isStarred = true;
    token = tokens.nextThing();
  }
  opening.first = token.extent;
  if (token.kind == Kind::word) opening.word = token.word;
  return opening;
}

CharacterGroup characterOf(const Tokens& tokens, const Opening& opening, std::size_t begin) {
  Tokens ahead(tokens.bytes(), opening.first.begin);
  if (!ahead.skipGroup()) throw damaged("ends inside a group that is not text");
  if (opening.word == Word::shppict) {
    Tokens next = ahead;
    if (next.nextThing().kind == Kind::open && openingOf(next).word == Word::nonshppict && next.skipGroup())
      ahead = next;
  }
  Character character;
  character.group = opening.word;
  character.bytes = {begin, ahead.at()};
  character.unit = unitOf(opening.word);
  if (opening.word == Word::annotation) character.comment = commentNumber(tokens.bytes(), character.bytes);
  const std::size_t inside = std::min(opening.first.end, character.bytes.end - 1);
  return {character, {opening.word, inside, character.bytes}};
}

std::optional<CharacterGroup> commentAt(const Tokens& tokens, std::size_t begin) {
  Tokens ahead(tokens.bytes(), begin + 1);
  if (!ahead.skipGroup()) return std::nullopt;
  for (Token token = ahead.nextThing();; token = ahead.nextThing()) {
    if (token.kind == Kind::word && token.word == Word::chatn) continue;
    if (token.kind != Kind::open) return std::nullopt;
    const Opening group = openingOf(ahead);
    ahead.goTo(group.first.begin);
    if (!ahead.skipGroup()) return std::nullopt;
    if (group.word == Word::annotation) {
      CharacterGroup comment = characterOf(tokens, group, token.extent.begin);
      comment.character.bytes.begin = comment.group.goesFrom = begin;
      return comment;
    }
    if (!isSkipped(group.word) && !group.isStarred) return std::nullopt;
  }
}

std::optional<MarkedNote> noteAfter(const Tokens& tokens, const Token& mark, bool mayFollowBrace) {
  Tokens ahead = tokens;
  Token token = ahead.nextThing();
  const bool isAfterBrace = token.kind == Kind::close && mayFollowBrace;
  if (isAfterBrace) token = ahead.nextThing();
  if (token.kind != Kind::open) return std::nullopt;
  const Opening note = openingOf(ahead);
  if (note.word != Word::footnote) return std::nullopt;
  ahead.goTo(note.first.begin);
  if (!ahead.skipGroup()) return std::nullopt;
  MarkedNote found;
  found.noteAt = token.extent.begin;
  found.character.group = Word::footnote;
  found.character.unit = unitOf(Word::footnote);
  found.character.bytes = {mark.extent.begin, ahead.at()};
  if (isAfterBrace) found.character.kept = {mark.extent.end, token.extent.begin};
  return found;
}

std::optional<Opening> codeOf(const Tokens& tokens, const Opening& field) {
  Tokens ahead(tokens.bytes(), field.first.end);
  Token token = ahead.nextThing();
  while (token.kind == Kind::word && token.word == Word::fieldFlag) token = ahead.nextThing();
  if (token.kind != Kind::open) return std::nullopt;
  const Opening code = openingOf(ahead);
  return code.word == Word::fldinst ? std::optional(code) : std::nullopt;
}

std::optional<Alternatives> alternativesOf(const Tokens& tokens, const Opening& opening) {
  Tokens ahead(tokens.bytes(), opening.first.end);
  Alternatives found;
  if (ahead.nextThing().kind != Kind::open) return std::nullopt;
  found.first.begin = ahead.at();
  if (!ahead.skipGroup()) return std::nullopt;
  found.first.end = ahead.at() - 1;
  const Token token = ahead.nextThing();
  if (token.kind != Kind::open) return std::nullopt;
  found.unicodeAt = token.extent.begin;
  found.unicode = openingOf(ahead);
  return found.unicode.word == Word::ud ? std::optional(found) : std::nullopt;
}

}  // namespace pluvo::rtf
