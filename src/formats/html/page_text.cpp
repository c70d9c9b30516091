#include "page_text.h"

#include "base/ascii.h"
#include "base/utf.h"
#include "references.h"
#include "simple_text.h"
#include "text/positions.h"

namespace pluvo::formats::html {

namespace {

constexpr char16_t kNoBreakSpace = 0xA0;

bool isBlankPoint(char32_t point) {
  return point == U' ' || point == U'\n' || point == U'\t' || point == U'\r' || point == U'\f';
}

}  // namespace

void PageText::take(Extent bytes) {
  if (walk_.state.silent) return walk_.events.aside(Aside::label, bytes);
  if (walk_.isPreformatted()) {
    takeKept(bytes);
  } else {
    takeFolded(bytes);
  }
}

/// Runs of letters with single blanks between them; whatever else there is goes one by one.
void PageText::takeFolded(Extent bytes) {
  std::size_t at = bytes.begin;
  while (at < bytes.end) {
    bool endsInBlank = paragraphs_.folds();
    std::size_t end = at + simpleTextIn(walk_.bytes.substr(at, bytes.end - at), endsInBlank);
    if (end > at) {
      paragraphs_.begin();
      walk_.events.text({at, end});
      paragraphs_.fold(endsInBlank);
      at = end;
      continue;
    }
    const char c = walk_.bytes[at];
    if (isBlank(c)) {
      while (end < bytes.end && isBlank(walk_.bytes[end]) && (paragraphs_.folds() || end == at)) ++end;
      blank({at, end});
      at = end;
    } else if (c == '&') {
      reference(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
}

void PageText::takeKept(Extent bytes) {
  std::size_t at = bytes.begin;
  while (at < bytes.end) {
    const std::size_t end = at + keptTextIn(walk_.bytes.substr(at, bytes.end - at));
    if (end > at) {
      paragraphs_.begin();
      walk_.events.text({at, end});
      paragraphs_.fold(false);
      at = end;
    } else if (walk_.bytes[at] == '\n' || walk_.bytes[at] == '\r') {
      lineEnd(at, bytes.end);
    } else if (walk_.bytes[at] == '&') {
      reference(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
}

void PageText::takeRaw(Extent bytes) {
  walk_.isRaw = true;
  for (std::size_t at = bytes.begin; at < bytes.end;) {
    if (walk_.bytes[at] == '\n' || walk_.bytes[at] == '\r') {
      lineEnd(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
  paragraphs_.end(bytes.end, true);
  walk_.isRaw = false;
}

/// The first line end in a pre, and the last one in front of its end tag, do not count.
void PageText::lineEnd(std::size_t& at, std::size_t end) {
  const bool isPair = walk_.bytes[at] == '\r' && at + 1 < end && walk_.bytes[at + 1] == '\n';
  const Extent bytes{at, at + (isPair ? 2 : 1)};
  at = bytes.end;
  const Block& block = walk_.blocks.inner();
  const bool isFirst =
      bytes.begin == block.tag.end && (block.name == Name::pre || block.name == Name::listing);
  const std::string_view after = walk_.bytes.substr(at, 2 + block.tagName.size());
  const bool isLast = at == end && after.starts_with("</") && (traitsOf(block.name) & kPreformatted) != 0 &&
                      base::equalsIgnoringAsciiCase(after.substr(2), walk_.in(block.tagName));
  if (isFirst || isLast) return walk_.events.gap(bytes);
  putMark(Character::Kind::paragraph, text::kParagraphMark, bytes);
  paragraphs_.fold(false);
}

void PageText::blank(Extent bytes) {
  if (paragraphs_.folds()) return walk_.events.gap(bytes);
  Character character;
  character.bytes = bytes;
  character.units[0] = u' ';
  character.folds = true;
  put(character);
  paragraphs_.fold(true);
}

void PageText::reference(std::size_t& at, std::size_t end) {
  const Reference reference = referenceAt(walk_.bytes.substr(at, end - at));
  Character character;
  if (reference.count == 0) {
    character.bytes = {at, at + 1};
    character.units[0] = u'&';
    character.isOpenEnded = true;
    at = character.bytes.end;
    return put(character);
  }
  character.bytes = {at, at + reference.length};
  at = character.bytes.end;
  if (reference.count == 1) return point(reference.points[0], character.bytes, !reference.isClosed);
  for (std::size_t i = 0; i < 2; ++i) character.units[i] = static_cast<char16_t>(reference.points[i]);
  character.count = 2;
  character.isOpenEnded = !reference.isClosed;
  put(character);
}

void PageText::point(char32_t point, Extent bytes, bool isOpenEnded) {
  const bool keepsBlanks = walk_.isPreformatted();
  if (isBlankPoint(point)) {
    if (!keepsBlanks) return blank(bytes);
    if (point == U'\n' || point == U'\r')
      return putMark(Character::Kind::paragraph, text::kParagraphMark, bytes);
    if (point == U'\f') point = U' ';
  } else if (point < 0x20) {
    point = base::kReplacement;
  }
  if (point == kNoBreakSpace && walk_.state.spaceRun && !keepsBlanks) point = U' ';
  Character character;
  character.bytes = bytes;
  character.isOpenEnded = isOpenEnded;
  const bool isPair = point > 0xFFFF;
  character.count = isPair ? 2 : 1;
  character.units = {isPair ? base::highSurrogateOf(point) : static_cast<char16_t>(point),
                     isPair ? base::lowSurrogateOf(point) : u'\0'};
  put(character);
}

/// A character, or a control that stands for none.
void PageText::decoded(std::size_t& at, std::size_t end) {
  const char c = walk_.bytes[at];
  if (c == '\0') {
    walk_.events.aside(Aside::markup, {at, at + 1});
    ++at;
    return;
  }
  const Decoded first = firstOf(walk_.page.charset(), walk_.bytes.substr(at, end - at));
  const Extent bytes{at, at + first.bytes};
  at = bytes.end;
  const bool isControl = first.point < 0x20 && !isBlankPoint(first.point);
  if (first.isValid && !isControl) return point(first.point, bytes, c == '<');
  Character character;
  character.bytes = bytes;
  character.units[0] = static_cast<char16_t>(base::kReplacement);
  character.isInvalid = !first.isValid;
  put(character);
}

void PageText::put(const Character& character) {
  paragraphs_.begin();
  paragraphs_.fold(false);
  walk_.events.character(character);
}

void PageText::putMark(Character::Kind kind, char16_t unit, Extent bytes, std::uint8_t count) {
  Character character;
  character.kind = kind;
  character.bytes = bytes;
  character.units = {unit, unit};
  character.count = count;
  put(character);
}

void PageText::lineBreak(const Token& token, const Style& style) {
  if (walk_.state.silent) return walk_.events.aside(Aside::label, token.extent);
  Character character;
  character.bytes = token.extent;
  character.isBreak = true;
  character.units[0] = text::kLineBreak;
  if (style.breaksSection || (style.breaksPage && style.special == Style::Special::lineBreak))
    character.units[0] = text::kPageBreak;
  if (style.breaksColumn) character.units[0] = text::kColumnBreak;
  if (style.breaksSection && !walk_.tables.isInside()) character.kind = Character::Kind::section;
  put(character);
  paragraphs_.fold(true);
  if (character.kind == Character::Kind::section) paragraphs_.endAtSection();
}

}  // namespace pluvo::formats::html
