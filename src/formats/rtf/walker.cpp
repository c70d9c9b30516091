#include "walker.h"

#include "damage.h"
#include "text/positions.h"

#include <algorithm>
#include <array>

namespace pluvo::rtf {

using Kind = Token::Kind;

namespace {

constexpr char16_t kNoCharacter = 0xFFFD;

bool isOn(const Token& token) { return !token.hasNumber || token.number != 0; }

}  // namespace

std::optional<std::size_t> Walker::beginningOf(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  std::size_t at = bytes.starts_with(kMark) ? kMark.size() : 0;
  constexpr std::size_t kBlanks = 64;
  for (const std::size_t most = at + kBlanks; at < std::min(bytes.size(), most); ++at) {
    if (bytes[at] != ' ' && bytes[at] != '\r' && bytes[at] != '\n' && bytes[at] != '\t') break;
  }
  return bytes.substr(std::min(at, bytes.size())).starts_with("{\\rtf") ? std::optional(at) : std::nullopt;
}

void Walker::walk() {
  if (!isStory_) {
    const std::optional<std::size_t> begin = beginningOf(tokens_.bytes());
    if (!begin) throw damaged("does not begin as an RTF document does");
    tokens_.goTo(*begin + 1);
  }
  frames_.reserve(64);
  frames_.push_back({});
  current().decoder = tables_.fonts.decoderOf(tables_.fonts.standard());
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
    if (token.isOpenEnded) noteOpenEnd(token.extent.end);
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
      return symbol(token);
    default:
      return;
  }
}

bool Walker::isText() const {
  return frames_.back().role != Role::alternatives && frames_.back().role != Role::rows;
}

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

/// Goes on behind the first word of a group.
void Walker::enter(Role role, std::size_t begin, const Opening& opening) {
  push(role, begin);
  const std::size_t inside = opening.first.end;
  tokens_.goTo(inside);
  if (tokens_.bytes()[inside - 1] != ' ') noteOpenEnd(inside);
}

Walker::Opening Walker::opening(Tokens& tokens) const {
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

Walker::Opening Walker::opening() const {
  Tokens ahead = tokens_;
  return opening(ahead);
}

/// The group whose brace stands at `begin`.
void Walker::open(std::size_t begin) {
  const Opening group = opening();
  const Role around = frames_.back().role;
  if (begin == noteAt_) return skip(group, begin);
  if (isSkipped(group.word)) {
    if (group.word == Word::atnid && isText() && comment(begin)) return;
    return skip(group, begin);
  }
  if (!isText()) return skip(group, begin);
  if (isOneCharacter(group.word)) return oneCharacter(group, begin);
  if (group.word == Word::field && field(group, begin)) return;
  if (group.word == Word::upr) {
    if (!alternatives(group, begin)) skip(group, begin);
    return;
  }
  if (group.word == Word::nesttableprops) return enter(Role::rows, begin, group);
  if (around == Role::field && group.word == Word::fldrslt && !frames_.back().hasSeparator) {
    frames_.back().hasSeparator = true;
    mark(Character::Kind::fieldSeparator, text::kFieldSeparator, {begin, group.first.end});
    return enter(Role::result, begin, group);
  }
  if (group.isStarred && group.word != Word::ud) return skip(group, begin);
  push(Role::plain, begin);
}

void Walker::skip(const Opening& opening, std::size_t begin) {
  const std::size_t inside = opening.first.begin;
  tokens_.goTo(inside);
  if (!tokens_.skipGroup()) throw damaged("ends inside a group that is not text");
  const Extent bytes{begin, tokens_.at()};
  const Extent content{std::min(opening.first.end, bytes.end - 1), bytes.end - 1};
  if (opening.word == Word::fonttbl && !isStory_) {
    tables_.fonts.read(tokens_.bytes(), content);
    current().decoder = tables_.fonts.decoderOf(tables_.fonts.standard());
    if (!tables_.hasColours && inHeader_) tables_.coloursAt = bytes.end;
  } else if (opening.word == Word::colortbl && !isStory_) {
    tables_.colours.read(tokens_.bytes(), content);
    tables_.coloursAt = content.end;
    tables_.hasColours = true;
  }
  events_.group({opening.word, content.begin, bytes});
}

void Walker::oneCharacter(const Opening& opening, std::size_t begin) {
  tokens_.goTo(opening.first.begin);
  if (!tokens_.skipGroup()) throw damaged("ends inside a group that is not text");
  if (opening.word == Word::shppict) {
    // The same picture for older programs follows it.
    Tokens ahead = tokens_;
    if (ahead.nextThing().kind == Kind::open && this->opening(ahead).word == Word::nonshppict &&
        ahead.skipGroup())
      tokens_.goTo(ahead.at());
  }
  Character character;
  character.group = opening.word;
  character.bytes = {begin, tokens_.at()};
  switch (opening.word) {
    case Word::shp:
      character.unit = 8;
      break;
    case Word::footnote:
      character.unit = 2;
      break;
    case Word::annotation:
      character.unit = text::kCommentReference;
      character.comment = commentNumber(character.bytes);
      break;
    default:
      character.unit = text::kPicture;
  }
  tell(character);
  events_.group({opening.word, std::min(opening.first.end, character.bytes.end - 1), character.bytes});
}

/// A comment from the name of its author on. False where none comes.
bool Walker::comment(std::size_t begin) {
  Tokens ahead(tokens_.bytes(), begin + 1);
  if (!ahead.skipGroup()) return false;
  for (Token token = ahead.nextThing();; token = ahead.nextThing()) {
    if (token.kind == Kind::word && token.word == Word::chatn) continue;
    if (token.kind != Kind::open) return false;
    const Opening group = opening(ahead);
    const Extent first = group.first;
    ahead.goTo(first.begin);
    if (!ahead.skipGroup()) return false;
    if (group.word == Word::annotation) {
      Character character;
      character.group = Word::annotation;
      character.unit = text::kCommentReference;
      character.bytes = {begin, ahead.at()};
      character.comment = commentNumber({token.extent.begin, ahead.at()});
      tokens_.goTo(ahead.at());
      tell(character);
      events_.group(
          {Word::annotation, std::min(first.end, ahead.at() - 1), {token.extent.begin, ahead.at()}});
      return true;
    }
    if (!isSkipped(group.word) && !group.isStarred) return false;
  }
}

std::optional<std::int32_t> Walker::commentNumber(Extent group) const {
  Tokens tokens(tokens_.bytes().substr(0, group.end), group.begin);
  constexpr int kNear = 32;
  for (int i = 0; i < kNear; ++i) {
    const Token token = tokens.next();
    if (token.kind == Kind::end) break;
    if (token.kind != Kind::word || token.word != Word::atnref) continue;
    return numberIn(tokens_.bytes().substr(token.extent.end, group.end - token.extent.end));
  }
  return std::nullopt;
}

/// The number of a note in main text and the note, which follows it or the brace after it. False where none
/// does.
bool Walker::noteBehind(const Token& mark) {
  Tokens ahead = tokens_;
  Token token = ahead.nextThing();
  const bool isAfterBrace = token.kind == Kind::close && frames_.size() > 1;
  if (isAfterBrace) token = ahead.nextThing();
  if (token.kind != Kind::open || opening(ahead).word != Word::footnote || !ahead.skipGroup()) return false;
  Character character;
  character.group = Word::footnote;
  character.unit = 2;
  character.bytes = {mark.extent.begin, ahead.at()};
  if (isAfterBrace) {
    character.kept = {mark.extent.end, token.extent.begin};
    noteAt_ = token.extent.begin;
  } else {
    noteAt_ = token.extent.begin;
  }
  tell(character);
  return true;
}

bool Walker::field(const Opening& opening, std::size_t begin) {
  Tokens ahead(tokens_.bytes(), opening.first.end);
  Token token = ahead.nextThing();
  while (token.kind == Kind::word && token.word == Word::fieldFlag) token = ahead.nextThing();
  if (token.kind != Kind::open) return false;
  const Opening code = this->opening(ahead);
  if (code.word != Word::fldinst) return false;
  if (++openFields_ > State::kDeepest) throw damaged("nests fields more than 1,000 deep");
  mark(Character::Kind::fieldBegin, text::kFieldBegin, {begin, code.first.end});
  push(Role::field, begin);
  enter(Role::code, begin, code);
  return true;
}

/// Text in the code page, and the same in Unicode, which counts.
bool Walker::alternatives(const Opening& opening, std::size_t begin) {
  Tokens ahead(tokens_.bytes(), opening.first.end);
  if (ahead.nextThing().kind != Kind::open || !ahead.skipGroup()) return false;
  if (ahead.nextThing().kind != Kind::open) return false;
  const Opening unicode = this->opening(ahead);
  if (unicode.word != Word::ud) return false;
  push(Role::alternatives, begin);
  enter(Role::plain, begin, unicode);
  return true;
}

bool Walker::isClosing(Tokens& tokens, std::size_t& end) const {
  const Token token = tokens.nextThing();
  end = token.extent.end;
  return token.kind == Kind::close;
}

/// The brace at `begin`, which may be the end of the bytes.
void Walker::close(std::size_t begin) {
  const std::size_t behind = tokens_.at();
  Frame& frame = frames_.back();
  if (frame.role == Role::code || frame.role == Role::result) {
    Frame& field = frames_[frames_.size() - 2];
    Tokens ahead = tokens_;
    std::size_t end = behind;
    if (isClosing(ahead, end) && frames_.size() > 2) {
      field.hasEnd = true;
      endField({begin, end}, 2);
      pop(behind);
      pop(end);
      return tokens_.goTo(end);
    }
    if (frame.role == Role::code) {
      ahead = tokens_;
      if (ahead.nextThing().kind == Kind::open) {
        const Opening result = opening(ahead);
        if (result.word == Word::fldrslt) {
          field.hasSeparator = true;
          mark(Character::Kind::fieldSeparator, text::kFieldSeparator, {begin, result.first.end});
          pop(behind);
          return enter(Role::result, behind, result);
        }
      }
    }
  } else if (frame.role == Role::field && !frame.hasEnd) {
    endField({begin, behind}, 1);
  }
  pop(behind, behind > begin);
}

void Walker::endField(Extent bytes, std::uint8_t closes) {
  --openFields_;
  Character character;
  character.kind = Character::Kind::fieldEnd;
  character.unit = text::kFieldEnd;
  character.bytes = bytes;
  character.closes = bytes.empty() ? std::uint8_t{0} : closes;
  tell(character);
}

/// A word that should begin a group, and does not.
void Walker::restIsSkipped(const Token& token) {
  const std::optional<Extent> rest = tokens_.restOfGroup();
  if (!rest) throw damaged("ends inside a group that is not text");
  const Extent bytes{token.extent.begin, rest->end};
  if (isOneCharacter(token.word)) {
    Character character;
    character.unit = text::kPicture;
    character.bytes = bytes;
    character.group = token.word;
    character.fillsGroup = true;
    tell(character);
  }
  events_.group({token.word, token.extent.end, bytes});
}

void Walker::word(const Token& token) {
  if (inHeader_ && !isStory_) header(token);
  if (token.word == Word::unknown) return events_.word(token);
  if (frames_.back().role == Role::rows) {
    if (token.word == Word::nestrow)
      mark(Character::Kind::row, text::kCellMark, token.extent, std::max<std::uint16_t>(state().depth, 2));
    return;
  }
  if (frames_.back().role == Role::alternatives) return;
  switch (token.word) {
    case Word::character:
      return put(token.unit, token.extent);
    case Word::par:
      return mark(Character::Kind::paragraph, text::kParagraphMark, token.extent, state().tableDepth());
    case Word::cell:
      return mark(Character::Kind::cell, text::kCellMark, token.extent, 1);
    case Word::nestcell:
      return mark(Character::Kind::cell, text::kCellMark, token.extent,
                  std::max<std::uint16_t>(state().depth, 2));
    case Word::row:
      return mark(Character::Kind::row, text::kCellMark, token.extent, 1);
    case Word::sect:
      return mark(Character::Kind::section, text::kPageBreak, token.extent);
    case Word::lbr:
      return put(11, token.extent);
    case Word::u:
      return numbered(token);
    case Word::chftn:
      if (isStory_ || !noteBehind(token)) events_.word(token);
      return;
    case Word::pict:
    case Word::fonttbl:
    case Word::colortbl:
    case Word::stylesheet:
    case Word::info:
      return restIsSkipped(token);
    default:
      apply(token);
      events_.word(token);
  }
}

/// Words before the first text, and where a table of colours may stand among them.
void Walker::header(const Token& token) {
  switch (token.word) {
    case Word::ansicpg:
      tables_.fonts.codePage(token.number);
      break;
    case Word::mac:
      tables_.fonts.codePage(10000);
      break;
    case Word::pc:
      tables_.fonts.codePage(437);
      break;
    case Word::pca:
      tables_.fonts.codePage(850);
      break;
    case Word::deff:
      tables_.fonts.standard(token.number);
      break;
    case Word::rtf:
    case Word::ansi:
    case Word::uc:
      break;
    default:
      return;
  }
  current().decoder = tables_.fonts.decoderOf(tables_.fonts.standard());
  const bool followsOthers = token.word == Word::rtf ? frames_.size() == 1 && tables_.coloursAt == 0
                                                     : tables_.coloursAt == token.extent.begin;
  if (followsOthers && !tables_.hasColours) tables_.coloursAt = token.extent.end;
}

void Walker::apply(const Token& token) {
  State& state = current();
  const auto small = [&](std::int32_t most) {
    return static_cast<std::uint16_t>(std::clamp(token.number, 0, most));
  };
  using Alignment = formats::Appearance::Alignment;
  switch (token.word) {
    case Word::f:
      state.decoder = tables_.fonts.decoderOf(token.number);
      break;
    case Word::plain: {
      State plain = state;
      plain.decoder = tables_.fonts.decoderOf(tables_.fonts.standard());
      plain.highlight = 0;
      plain.hidden = plain.bold = plain.italic = plain.underlined = plain.struck = plain.complexScript =
          false;
      state = plain;
      break;
    }
    case Word::v:
      state.hidden = isOn(token);
      break;
    case Word::deleted:
      state.deleted = isOn(token);
      break;
    case Word::revised:
      state.inserted = isOn(token);
      break;
    case Word::highlight:
      state.highlight = tables_.colours.indexAt(token.number);
      break;
    case Word::b:
      if (!state.complexScript) state.bold = isOn(token);
      break;
    case Word::i:
      if (!state.complexScript) state.italic = isOn(token);
      break;
    case Word::strike:
      state.struck = isOn(token);
      break;
    case Word::ul:
      state.underlined = isOn(token);
      break;
    case Word::ulnone:
      state.underlined = false;
      break;
    case Word::rtlch:
      state.complexScript = true;
      break;
    case Word::ltrch:
      state.complexScript = false;
      break;
    case Word::uc:
      state.fallback = small(State::kDeepest);
      break;
    case Word::pard:
      state.inTable = state.rightToLeft = false;
      state.depth = 0;
      state.alignment = Alignment::start;
      state.outlineLevel = State::kNoOutline;
      state.list = 0;
      state.listLevel = 0;
      state.style = 0;
      break;
    case Word::intbl:
      state.inTable = isOn(token);
      break;
    case Word::itap:
      state.depth = small(State::kDeepest);
      break;
    case Word::ql:
    case Word::qj:
      state.alignment = Alignment::start;
      break;
    case Word::qc:
      state.alignment = Alignment::centre;
      break;
    case Word::qr:
      state.alignment = Alignment::end;
      break;
    case Word::rtlpar:
      state.rightToLeft = true;
      break;
    case Word::ltrpar:
      state.rightToLeft = false;
      break;
    case Word::outlinelevel:
      state.outlineLevel = static_cast<std::uint8_t>(small(State::kNoOutline));
      break;
    case Word::s:
      state.style = token.number;
      break;
    case Word::ls:
      state.list = small(0xFFFF);
      break;
    case Word::ilvl:
      state.listLevel = static_cast<std::uint8_t>(small(8));
      break;
    default:
      break;
  }
}

void Walker::symbol(const Token& token) {
  if (!isText()) return;
  switch (token.unit) {
    case u'~':
      return put(0xA0, token.extent);
    case u'_':
      return put(30, token.extent);
    case u'-':
      return put(31, token.extent);
    case u'{':
    case u'}':
    case u'\\':
      return byte(token);
    default:
      return;
  }
}

void Walker::text(Extent bytes) {
  if (!isText()) return;
  inHeader_ = false;
  if (state().inCode || tables_.fonts.decoder(state().decoder).kind != Decoder::Kind::symbol)
    return events_.text(bytes);
  for (std::size_t at = bytes.begin; at < bytes.end; ++at) {
    put(static_cast<char16_t>(0xF000 + static_cast<std::uint8_t>(tokens_.bytes()[at])), {at, at + 1});
  }
}

void Walker::byte(const Token& token) {
  if (!isText()) return;
  const char16_t value = token.unit;
  const Decoder& decoder = tables_.fonts.decoder(state().decoder);
  if (value == u'\t') return put(value, token.extent);
  if (value == u'\r' || value == u'\n')
    return mark(Character::Kind::paragraph, text::kParagraphMark, token.extent, state().tableDepth());
  if (value < 0x20) return;
  if (decoder.kind == Decoder::Kind::symbol && !state().inCode)
    return put(static_cast<char16_t>(0xF000 + value), token.extent);
  if (value < 0x80) return put(value, token.extent);
  if (decoder.kind == Decoder::Kind::several) return severalBytes(token, decoder);
  put(decoder.kind == Decoder::Kind::single ? decoder.upper[value - 0x80U] : value, token.extent);
}

/// A character of up to four bytes, of which the first is given. What is none ends before the next brace or
/// word.
void Walker::severalBytes(const Token& token, const Decoder& decoder) {
  std::array<std::uint8_t, 4> bytes = {static_cast<std::uint8_t>(token.unit)};
  std::array<std::size_t, 4> ends = {token.extent.end};
  std::size_t count = 1;
  Tokens ahead = tokens_;
  const auto whole = [&]() -> std::optional<code_pages::Character> {
    const code_pages::Character character = decoder.page->first(base::ByteSpan(bytes).first(count));
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
  tell(character);
}

/// A character by number, and what stands for it in programs that do not know it.
void Walker::numbered(const Token& token) {
  Character character;
  character.bytes = token.extent;
  std::uint16_t left = state().fallback;
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
    if (next.isOpenEnded) noteOpenEnd(end);
  }
  character.missingFallback = left;
  character.unit = static_cast<char16_t>(token.number);
  const bool isNone = token.number < -32768 || token.number > 65535 || character.unit < 0x20;
  if (!isNone || token.number == u'\t') return tell(character);
  if (left > 0) events_.missingFallback(left, character.fallbackAt);
}

void Walker::put(char16_t unit, Extent bytes) {
  Character character;
  character.unit = unit;
  character.bytes = bytes;
  tell(character);
}

void Walker::mark(Character::Kind kind, char16_t unit, Extent bytes, std::uint16_t depth) {
  Character character;
  character.kind = kind;
  character.unit = unit;
  character.bytes = bytes;
  character.depth = depth;
  tell(character);
}

void Walker::tell(const Character& character) {
  inHeader_ = false;
  events_.character(character);
}

}  // namespace pluvo::rtf
