#include "characters.h"

#include "text/positions.h"

#include <algorithm>

namespace pluvo::rtf {

using Kind = Token::Kind;

namespace {

Character markAt(const Token& token, Character::Kind kind, char16_t unit, std::uint16_t depth) {
  Character character = characterAt(token.extent, unit, kind);
  character.depth = depth;
  return character;
}

std::uint16_t nestedDepth(const State& state) { return std::max<std::uint16_t>(state.depth, 2); }

}  // namespace

Character nestedRow(const Token& token, const State& state) {
  return markAt(token, Character::Kind::row, text::kCellMark, nestedDepth(state));
}

std::optional<Character> CharacterReader::ofWord(const Token& token, const State& state) const {
  switch (token.word) {
    case Word::character:
      return characterAt(token.extent, token.unit);
    case Word::par:
      return markAt(token, Character::Kind::paragraph, text::kParagraphMark, state.tableDepth());
    case Word::cell:
      return markAt(token, Character::Kind::cell, text::kCellMark, 1);
    case Word::nestcell:
      return markAt(token, Character::Kind::cell, text::kCellMark, nestedDepth(state));
    case Word::row:
      return markAt(token, Character::Kind::row, text::kCellMark, 1);
    case Word::sect:
      return characterAt(token.extent, text::kPageBreak, Character::Kind::section);
    case Word::lbr:
      return characterAt(token.extent, 11);
    default:
      return std::nullopt;
  }
}

std::optional<Character> CharacterReader::ofSymbol(const Token& token, const State& state) const {
  switch (token.unit) {
    case u'~':
      return characterAt(token.extent, 0xA0);
    case u'_':
      return characterAt(token.extent, 30);
    case u'-':
      return characterAt(token.extent, 31);
    case u'{':
    case u'}':
    case u'\\':
      return ofByte(token, state);
    default:
      return std::nullopt;
  }
}

std::optional<Character> CharacterReader::ofByte(const Token& token, const State& state) const {
  if (token.unit == u'\r' || token.unit == u'\n')
    return markAt(token, Character::Kind::paragraph, text::kParagraphMark, state.tableDepth());
  Character character = characterAt(token.extent, token.unit);
  if (token.unit < 0x20) return token.unit == u'\t' ? std::optional(character) : std::nullopt;
  const Decoder& decoder = fonts_.decoder(state.decoder);
  if (decoder.kind == Decoder::Kind::symbol && !state.inCode) {
    character.unit = static_cast<char16_t>(0xF000 + token.unit);
  } else if (token.unit >= 0x80 && decoder.kind == Decoder::Kind::several) {
    return ofSeveral(token, *decoder.page);
  } else if (token.unit >= 0x80 && decoder.kind == Decoder::Kind::single) {
    character.unit = decoder.upper[token.unit - 0x80U];
  }
  return character;
}

/// A character of up to four bytes, of which the first is given. An incomplete one ends before the next brace
/// or word.
Character CharacterReader::ofSeveral(const Token& token, const code_pages::CodePage& page) const {
  constexpr char16_t kNoCharacter = 0xFFFD;
  std::array<std::uint8_t, 4> bytes = {static_cast<std::uint8_t>(token.unit)};
  std::array<std::size_t, 4> ends = {token.extent.end};
  std::size_t count = 1;
  Tokens ahead = tokens_;
  const auto whole = [&]() -> std::optional<code_pages::Character> {
    const code_pages::Character character = page.first(base::ByteSpan(bytes).first(count));
    return character.valid && character.bytes == count ? std::optional(character) : std::nullopt;
  };
  auto found = whole();
  while (!found && count < bytes.size()) {
    const Token next = ahead.nextThing();
    if (next.kind == Kind::text) {
      bytes[count] = static_cast<std::uint8_t>(ahead.bytes()[next.extent.begin]);
      ends[count] = next.extent.begin + 1;
      ahead.goTo(ends[count]);
    } else if (next.kind == Kind::byte) {
      bytes[count] = static_cast<std::uint8_t>(next.unit);
      ends[count] = next.extent.end;
    } else {
      break;
    }
    ++count;
    found = whole();
  }
  Character character;
  character.isHalf = !found;
  const std::size_t end = ends[found ? count - 1 : 0];
  character.bytes = {token.extent.begin, end};
  const char32_t point = found ? found->codePoint : kNoCharacter;
  character.unit = static_cast<char16_t>(point);
  if (point > 0xFFFF) {
    character.unit = static_cast<char16_t>(0xD7C0 + (point >> 10U));
    character.second = static_cast<char16_t>(0xDC00 + (point & 0x3FFU));
  }
  tokens_.goTo(end);
  return character;
}

CharacterReader::Numbered CharacterReader::ofNumber(const Token& token, const State& state) const {
  Numbered numbered;
  Character& character = numbered.character;
  character.bytes = token.extent;
  std::uint16_t left = state.fallback;
  while (left > 0) {
    const std::size_t from = tokens_.at();
    const Token next = tokens_.nextThing();
    std::size_t end = next.extent.end;
    if (next.kind == Kind::text) {
      const std::size_t taken = std::min<std::size_t>(left, end - next.extent.begin);
      left = static_cast<std::uint16_t>(left - taken);
      end = next.extent.begin + taken;
    } else if (next.kind == Kind::byte || (next.kind == Kind::symbol && next.unit != u'*') ||
               (next.kind == Kind::word && (next.word == Word::character || next.word == Word::bin))) {
      --left;
    } else {
      tokens_.goTo(from);
      character.fallbackAt = {from, next.extent.begin};
      break;
    }
    tokens_.goTo(end);
    character.bytes.end = end;
    if (next.isOpenEnded) openEnds_.note(end);
  }
  character.missingFallback = left;
  character.unit = static_cast<char16_t>(token.number);
  const bool isNone = token.number < -32768 || token.number > 65535 || character.unit < 0x20;
  numbered.isNone = isNone && token.number != u'\t';
  return numbered;
}

}  // namespace pluvo::rtf
