// How a walk takes text apart.
#include "base/ascii.h"
#include "base/utf.h"
#include "references.h"
#include "text/positions.h"
#include "walker.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace pluvo::formats::html {

namespace {

constexpr char16_t kNoBreakSpace = 0xA0;

/// ASCII that stands for itself wherever it is.
constexpr std::array<bool, 256> makeSimple() {
  std::array<bool, 256> simple{};
  for (std::size_t c = 0x21; c < 0x7F; ++c) simple[c] = c != '&' && c != '<';
  return simple;
}
constexpr std::array<bool, 256> kSimple = makeSimple();

constexpr std::uint64_t inEach(std::uint64_t byte) { return byte * 0x0101010101010101U; }
constexpr std::uint64_t kTop = inEach(0x80);

/// The top bit of each of eight bytes that is a certain one, and perhaps of some after the first such.
constexpr std::uint64_t where(std::uint64_t eight, char byte) {
  const std::uint64_t differs = eight ^ inEach(static_cast<unsigned char>(byte));
  return (differs - inEach(1)) & ~differs & kTop;
}

/// As many eights of bytes as are letters with single blanks between them. IsBlank says whether a blank
/// stands in front, and then whether one ends them.
std::size_t lettersIn(std::string_view bytes, bool& isBlank) {
  constexpr std::size_t kEight = sizeof(std::uint64_t);
  std::size_t taken = 0;
  if constexpr (std::endian::native != std::endian::little) return taken;
  for (std::uint64_t eight = 0; bytes.size() - taken >= kEight; taken += kEight) {
    std::memcpy(&eight, bytes.data() + taken, kEight);
    const std::uint64_t isControl = (eight - inEach(' ')) & ~eight & kTop;
    const std::uint64_t isForeign = eight & kTop;
    if ((isControl | isForeign | where(eight, '&') | where(eight, '<') | where(eight, '\x7F')) != 0) break;
    // No byte's sum reaches into the next, since all are ASCII.
    const std::uint64_t blanks = ~((eight ^ inEach(' ')) + inEach(0x7F)) & kTop;
    if ((blanks & (blanks << 8U | (isBlank ? 0x80U : 0U))) != 0) break;
    isBlank = (blanks >> 63U) != 0;
  }
  return taken;
}

bool isSimple(char c) { return kSimple[static_cast<unsigned char>(c)]; }
bool isBlankPoint(char32_t point) {
  return point == U' ' || point == U'\n' || point == U'\t' || point == U'\r' || point == U'\f';
}

}  // namespace

void Walker::text(Extent bytes) {
  if (state_.silent) return events_.aside(Aside::label, bytes);
  if (isPreformatted()) {
    keptText(bytes);
  } else {
    foldedText(bytes);
  }
}

void Walker::beginParagraph() {
  endAt_ = kNowhere;
  hadText_ = true;
  markState_ = {};
  if (isOpen_) return;
  if (isBetweenCells()) interruptTable();
  isOpen_ = true;
}

/// Runs of letters with single blanks between them; whatever else there is goes one by one.
void Walker::foldedText(Extent bytes) {
  std::size_t at = bytes.begin;
  while (at < bytes.end) {
    std::size_t end = at;
    bool endsInBlank = folds_;
    end += lettersIn(bytes_.substr(end, bytes.end - end), endsInBlank);
    for (;;) {
      const std::size_t from = end;
      while (end < bytes.end && isSimple(bytes_[end])) ++end;
      endsInBlank = endsInBlank && end == from;
      if (end == bytes.end || bytes_[end] != ' ' || endsInBlank) break;
      endsInBlank = true;
      ++end;
    }
    if (end > at) {
      beginParagraph();
      events_.text({at, end});
      folds_ = endsInBlank;
      at = end;
      continue;
    }
    const char c = bytes_[at];
    if (isBlank(c)) {
      while (end < bytes.end && isBlank(bytes_[end]) && (folds_ || end == at)) ++end;
      blank({at, end});
      at = end;
    } else if (c == '&') {
      reference(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
}

void Walker::keptText(Extent bytes) {
  std::size_t at = bytes.begin;
  while (at < bytes.end) {
    std::size_t end = at;
    while (end < bytes.end && (isSimple(bytes_[end]) || bytes_[end] == ' ' || bytes_[end] == '\t')) ++end;
    if (end > at) {
      beginParagraph();
      events_.text({at, end});
      folds_ = false;
      at = end;
    } else if (bytes_[at] == '\n' || bytes_[at] == '\r') {
      lineEnd(at, bytes.end);
    } else if (bytes_[at] == '&') {
      reference(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
}

/// Without references, and never to be changed.
void Walker::rawText(Extent bytes) {
  isRaw_ = true;
  for (std::size_t at = bytes.begin; at < bytes.end;) {
    if (bytes_[at] == '\n' || bytes_[at] == '\r') {
      lineEnd(at, bytes.end);
    } else {
      decoded(at, bytes.end);
    }
  }
  endParagraph(bytes.end, true);
  isRaw_ = false;
}

/// The first line end in a pre, and the last one in front of its end tag, do not count.
void Walker::lineEnd(std::size_t& at, std::size_t end) {
  const bool isPair = bytes_[at] == '\r' && at + 1 < end && bytes_[at + 1] == '\n';
  const Extent bytes{at, at + (isPair ? 2 : 1)};
  at = bytes.end;
  const std::string_view after = bytes_.substr(at, 2 + part(block().tagName).size());
  const bool isLast = at == end && after.starts_with("</") && (traitsOf(block().name) & kPreformatted) != 0 &&
                      base::equalsIgnoringAsciiCase(after.substr(2), part(block().tagName));
  if (bytes.begin == lineFeedAt_ || isLast) return events_.gap(bytes);
  putMark(Character::Kind::paragraph, text::kParagraphMark, bytes);
  folds_ = false;
}

void Walker::blank(Extent bytes) {
  if (folds_) return events_.gap(bytes);
  Character character;
  character.bytes = bytes;
  character.units[0] = u' ';
  character.folds = true;
  put(character);
  folds_ = true;
}

void Walker::reference(std::size_t& at, std::size_t end) {
  const Reference reference = referenceAt(bytes_.substr(at, end - at));
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

void Walker::point(char32_t point, Extent bytes, bool isOpenEnded) {
  const bool keepsBlanks = isPreformatted();
  if (isBlankPoint(point)) {
    if (!keepsBlanks) return blank(bytes);
    if (point == U'\n' || point == U'\r')
      return putMark(Character::Kind::paragraph, text::kParagraphMark, bytes);
    if (point == U'\f') point = U' ';
  } else if (point < 0x20) {
    point = base::kReplacement;
  }
  if (point == kNoBreakSpace && state_.spaceRun && !keepsBlanks) point = U' ';
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
void Walker::decoded(std::size_t& at, std::size_t end) {
  const char c = bytes_[at];
  if (c == '\0') {
    events_.aside(Aside::markup, {at, at + 1});
    ++at;
    return;
  }
  const Decoded first = firstOf(page_.charset(), bytes_.substr(at, end - at));
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

void Walker::put(const Character& character) {
  beginParagraph();
  folds_ = false;
  events_.character(character);
}

void Walker::putMark(Character::Kind kind, char16_t unit, Extent bytes, std::uint8_t count) {
  Character character;
  character.kind = kind;
  character.bytes = bytes;
  character.units = {unit, unit};
  character.count = count;
  put(character);
}

/// The marks that end a line, a page, a column or a section. Blanks after them are no text.
void Walker::lineBreak(const Token& token, const Style& style) {
  if (state_.silent) return events_.aside(Aside::label, token.extent);
  Character character;
  character.bytes = token.extent;
  character.isBreak = true;
  character.units[0] = text::kLineBreak;
  if (style.breaksSection || (style.breaksPage && style.special == Style::Special::lineBreak))
    character.units[0] = text::kPageBreak;
  if (style.breaksColumn) character.units[0] = text::kColumnBreak;
  if (style.breaksSection && scopes_.empty()) character.kind = Character::Kind::section;
  put(character);
  folds_ = true;
  if (character.kind != Character::Kind::section) return;
  isOpen_ = false;
  endedSection_ = true;
}

}  // namespace pluvo::formats::html
