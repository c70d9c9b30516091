#include "pattern.h"

#include "automation.h"
#include "errors/text.h"

#include <windows.h>

#include <algorithm>

namespace pluvo::stand_in {
namespace {

struct Code {
  char16_t letter;
  char16_t unit;
};
constexpr Code kCodes[] = {
    {u'p', 13}, {u't', 9}, {u'l', 11}, {u'm', 12}, {u'n', 14}, {u's', 160},  {u'~', 30},     {u'-', 31},
    {u'a', 5},  {u'f', 2}, {u'e', 2},  {u'g', 1},  {u'd', 19}, {u'^', u'^'}, {u'+', 0x2014}, {u'=', 0x2013},
};

/// What Word does not tell apart when it searches.
char16_t class_(char16_t unit) {
  if (unit == 0x2018 || unit == 0x2019) return u'\'';
  if (unit == 0x201C || unit == 0x201D) return u'"';
  return unit;
}

char16_t lower(char16_t unit) {
  wchar_t wide = static_cast<wchar_t>(unit);
  CharLowerBuffW(&wide, 1);
  return static_cast<char16_t>(wide);
}

bool isLetter(char16_t unit) { return IsCharAlphaW(static_cast<wchar_t>(unit)) != 0; }
bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isWordPart(char16_t unit) { return IsCharAlphaNumericW(static_cast<wchar_t>(unit)) != 0; }
bool separatesWords(char16_t unit) { return unit == u' ' || unit == 160 || (unit >= 9 && unit <= 14); }
bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == 160; }

/// A code that counts its characters in Word's own code pages: ^nnn in the OEM one, ^0nnn in the ANSI one.
char16_t inCodePage(unsigned number, UINT page) {
  const char byte = static_cast<char>(number);
  wchar_t wide = 0;
  MultiByteToWideChar(page, 0, &byte, 1, &wide, 1);
  return static_cast<char16_t>(wide);
}

}  // namespace

Pattern::Pattern(const Criteria& criteria) : criteria_(criteria) {
  std::u16string_view rest = criteria_.text;
  while (!rest.empty()) {
    if (rest[0] == u'^') {
      rest.remove_prefix(1 + code(rest.substr(1)));
    } else {
      tokens_.push_back({Kind::unit, rest[0]});
      rest.remove_prefix(1);
    }
  }
  if (std::ranges::any_of(tokens_, [](const Token& token) {
        return token.kind == Kind::blanks || (token.kind == Kind::unit && separatesWords(token.unit));
      }))
    criteria_.wholeWord = false;
}

std::size_t Pattern::code(std::u16string_view rest) {
  const auto digits = [&](std::size_t from) {
    std::size_t to = from;
    while (to < rest.size() && to - from < 5 && isDigit(rest[to])) ++to;
    return rest.substr(from, to - from);
  };
  const char16_t letter = rest.empty() ? u'\0' : rest[0];
  if (isDigit(letter)) return numbered(rest, digits(0));
  switch (letter) {
    case u'?':
      tokens_.push_back({Kind::any});
      return 1;
    case u'#':
      tokens_.push_back({Kind::digit});
      return 1;
    case u'$':
      tokens_.push_back({Kind::letter});
      return 1;
    case u'w':
      tokens_.push_back({Kind::blanks});
      return 1;
    case u'b':
      tokens_.push_back({Kind::section});
      return 1;
    case u'u': {
      const auto number = digits(1);
      if (!number.empty()) {
        tokens_.push_back({Kind::unit, static_cast<char16_t>(std::stoul(errors::utf8(number)))});
        return 1 + number.size();
      }
      break;
    }
    default:
      for (const Code& known : kCodes) {
        if (known.letter != letter) continue;
        tokens_.push_back({Kind::unit, known.unit});
        return 1;
      }
  }
  throw WordError{5692, u"^" + std::u16string(rest.substr(0, 1)) +
                            u" is not a valid special character for the Find What box."};
}

std::size_t Pattern::numbered(std::u16string_view rest, std::u16string_view digits) {
  const bool ansi = rest[0] == u'0';
  const std::u16string_view taken = digits.substr(0, ansi ? 4 : 3);
  const auto number = static_cast<unsigned>(std::stoul(errors::utf8(taken)));
  if (number > 255) throw WordError{5692, u"The character number is out of range."};
  const char16_t unit =
      number < 32 ? static_cast<char16_t>(number) : inCodePage(number, ansi ? CP_ACP : CP_OEMCP);
  tokens_.push_back({Kind::unit, unit});
  return taken.size();
}

bool Pattern::fits(const model::Model& model, const Visible& visible, const Token& token,
                   std::size_t at) const {
  const char16_t unit = visible.units[at];
  if (unit == text::kCellMark) return false;
  switch (token.kind) {
    case Kind::any:
      return unit != text::kParagraphMark;
    case Kind::digit:
      return isDigit(unit);
    case Kind::letter:
      return isLetter(unit);
    case Kind::blanks:
      return isBlank(unit);
    case Kind::section:
      return model.structure().valueAt(visible.positions[at]).sectionMark;
    case Kind::unit:
      break;
  }
  if (class_(unit) == class_(token.unit)) return true;
  if (token.unit == u' ' && unit == 160) return true;
  return !criteria_.matchCase && lower(unit) == lower(token.unit);
}

std::optional<std::size_t> Pattern::matchAt(const model::Model& model, const Visible& visible,
                                            std::size_t at) const {
  for (const Token& token : tokens_) {
    if (at >= visible.units.size() || !fits(model, visible, token, at)) return std::nullopt;
    ++at;
    if (token.kind != Kind::blanks) continue;
    while (at < visible.units.size() && isBlank(visible.units[at])) ++at;
  }
  return at;
}

bool Pattern::standsAsAsked(const Visible& visible, std::size_t from, std::size_t to) const {
  const bool beginsWord = from == 0 || !isWordPart(visible.units[from - 1]);
  const bool endsWord = to == visible.units.size() || !isWordPart(visible.units[to]);
  return ((!criteria_.wholeWord && !criteria_.prefix) || beginsWord) &&
         ((!criteria_.wholeWord && !criteria_.suffix) || endsWord);
}

std::optional<text::Span> Pattern::find(const model::Model& model, text::View view, text::Span span,
                                        bool forward) const {
  if (tokens_.empty()) return std::nullopt;
  Visible visible;
  text::forEachVisibleStretch(model.text(), model.visibility(), view, 0, model.length(),
                              [&](text::Position start, const text::Stretch& stretch) {
                                for (text::Position i = 0; i < stretch.length; ++i) {
                                  visible.units += stretch[i];
                                  visible.positions.push_back(start + i);
                                }
                                return true;
                              });
  const auto& positions = visible.positions;
  const auto first = std::lower_bound(positions.begin(), positions.end(), span.from);
  std::optional<text::Span> last;
  for (auto at = static_cast<std::size_t>(first - positions.begin()); at < positions.size(); ++at) {
    const auto to = matchAt(model, visible, at);
    if (!to || !standsAsAsked(visible, at, *to)) continue;
    const text::Span match{positions[at], positions[*to - 1] + 1};
    if (match.to > span.to) continue;
    if (forward) return match;
    last = match;
  }
  return last;
}

}  // namespace pluvo::stand_in
