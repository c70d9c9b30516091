#include "automation.h"
#include "world.h"

#include <algorithm>

namespace pluvo::stand_in {
namespace {

using text::Position;
using text::Span;

constexpr char16_t kHardBlank = 160;

bool isWordPart(char16_t unit) { return IsCharAlphaNumericW(static_cast<wchar_t>(unit)) != 0; }

/// As it is compared: typographic quotes as straight ones.
char16_t compared(char16_t unit, bool matchCase) {
  if (unit == 0x2018 || unit == 0x2019) return u'\'';
  if (unit == 0x201C || unit == 0x201D) return u'"';
  wchar_t wide = static_cast<wchar_t>(unit);
  if (!matchCase) CharLowerBuffW(&wide, 1);
  return static_cast<char16_t>(wide);
}

std::u16string withoutCodes(const std::u16string& text) {
  constexpr std::int32_t kNoSuchCode = 5692;
  std::u16string all;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'^' && text.substr(++i, 1) != u"^") throw refusal(kNoSuchCode);
    all += text[i];
  }
  return all;
}

/// The characters that the view shows, and where each stands.
struct Visible {
  std::u16string units;
  std::vector<Position> positions;

  explicit Visible(OpenDocument& document) {
    const document::Story& model = document.mainText();
    text::forEachVisibleStretch(model.text(), model.visibility(), document.view, 0, model.length(),
                                [&](Position start, const text::Stretch& stretch) {
                                  for (Position i = 0; i < stretch.length; ++i) {
                                    if (stretch[i] == kUnseen) continue;
                                    units += stretch[i];
                                    positions.push_back(start + i);
                                  }
                                  return true;
                                });
  }
};

}  // namespace

std::optional<Span> find(OpenDocument& document, const FindSettings& settings, Span span) {
  // The one pattern that is used: a paragraph mark or a manual line break.
  const bool isPattern = settings.flags.at(u"MatchWildcards");
  if (isPattern && settings.text != u"[^11^13]") throw Failure{E_NOTIMPL};
  const std::u16string text = isPattern ? u"\r" : withoutCodes(settings.text);
  if (text.empty()) return std::nullopt;
  const bool matchCase = settings.flags.at(u"MatchCase");
  const bool wholeWord =
      settings.flags.at(u"MatchWholeWord") && text.find_first_of(u" \u00A0\t\n\v\f\r\xE") == text.npos;
  const auto isSame = [&](char16_t asked, char16_t there) {
    if (there == text::kCellMark) return false;
    if (isPattern) return there == text::kParagraphMark || there == text::kLineBreak;
    return compared(asked, matchCase) == compared(there, matchCase) || (asked == u' ' && there == kHardBlank);
  };
  const Visible visible(document);
  const auto& [units, positions] = visible;
  const auto first = std::ranges::lower_bound(positions, span.from);
  for (auto at = static_cast<std::size_t>(first - positions.begin()); at + text.size() <= units.size();
       ++at) {
    const std::size_t to = at + text.size();
    const bool standsAlone =
        (at == 0 || !isWordPart(units[at - 1])) && (to == units.size() || !isWordPart(units[to]));
    const Span match{positions[at], positions[to - 1] + 1};
    if (match.to <= span.to && (standsAlone || !wholeWord) &&
        std::equal(text.begin(), text.end(), units.begin() + static_cast<std::ptrdiff_t>(at), isSame))
      return match;
  }
  return std::nullopt;
}

}  // namespace pluvo::stand_in
