#include "find.h"

#include "fault.h"
#include "text.h"

#include <windows.h>

#include <algorithm>

namespace pluvo::word_com {

namespace {

/// What Word's find takes, codes as they are written.
constexpr std::size_t kMostForFind = 255;

/// What a search dialog may have left behind, and how it is for a literal search.
struct Sticky {
  const wchar_t* property;
  bool value;
};
/// Not every Word has all of them, nor can all be set without the languages they are for.
constexpr Sticky kSticky[] = {
    {L"Format", false},         {L"MatchPrefix", false},  {L"MatchSuffix", false},
    {L"MatchPhrase", false},    {L"IgnoreSpace", false},  {L"IgnorePunct", false},
    {L"MatchFuzzy", false},     {L"MatchKashida", false}, {L"MatchDiacritics", false},
    {L"MatchAlefHamza", false}, {L"MatchControl", false}, {L"MatchByte", true},
};

/// The longest beginning of the text that Word takes, as Word takes it.
struct Written {
  std::u16string text;
  std::size_t given = 0;

  explicit Written(const std::u16string& asked) {
    for (const char16_t unit : asked) {
      const std::size_t length = unit == u'^' ? 2 : 1;
      if (text.size() + length > kMostForFind) break;
      text.append(length, unit);
      ++given;
    }
    // Half a character is found nowhere.
    if (given < asked.size() && IS_HIGH_SURROGATE(text.back())) {
      text.pop_back();
      --given;
    }
  }
};

bool isOneWord(const std::u16string& text) {
  return std::ranges::all_of(
      text, [](char16_t unit) { return IsCharAlphaNumericW(static_cast<wchar_t>(unit)) != FALSE; });
}

bool isPartOfWord(const std::u16string& neighbour) {
  return !neighbour.empty() && IsCharAlphaNumericW(static_cast<wchar_t>(neighbour.front())) != FALSE;
}

}  // namespace

void ComFind::ClearFormatting() {
  find_.call(L"ClearFormatting");
  for (const Sticky& sticky : kSticky) {
    if (is(sticky.property, sticky.value)) continue;
    put(sticky.property, sticky.value);
  }
}

/// What cannot be looked at is not there to matter.
bool ComFind::is(const wchar_t* property, bool value) const {
  try {
    return find_.get(property).toBoolean() == value;
  } catch (const errors::Fault& fault) {
    if (fault.number == kServerGone) throw;
    return true;
  }
}

void ComFind::Text(const std::u16string& text) {
  const Written written(text);
  find_.put(L"Text", Arguments().text(written.text));
  text_ = text;
  given_ = written.given;
  if (wholeWord_) MatchWholeWord(true);
}

void ComFind::MatchCase(bool value) {
  put(L"MatchCase", value);
  matchCase_ = value;
}

/// Word itself sees to it for a text of one word, and what counts as more than one it does not tell. The end
/// of a shortened text is inside a word perhaps.
void ComFind::MatchWholeWord(bool value) {
  wordSeesToWords_ = value && given_ == text_.size() && isOneWord(text_);
  put(L"MatchWholeWord", wordSeesToWords_);
  wholeWord_ = value;
}

bool ComFind::executeInWord() const {
  constexpr int kParameters = 15;
  return find_.call(L"Execute", Arguments().missing(kParameters)).toBoolean();
}

bool ComFind::Execute() {
  const Span asked = range_->span();
  const bool found = findsWithin(asked);
  if (!found && range_->span() != asked) range_->set(asked);
  return found;
}

bool ComFind::findsWithin(Span asked) {
  // What Word makes of an empty text is its own business, but not a text.
  if (text_.empty()) return executeInWord() && !range_->span().spans();

  Span within = asked;
  // Word does not find what is the whole range.
  while (!(asked.spans() && isWholeMatch(within))) {
    const bool found = executeInWord();
    const Span match = found ? range_->span() : within;
    const bool ranOn = asked.spans() && match.end > asked.end;
    if (!found || ranOn || match.start < within.start) {
      // Hidden text makes a range longer than what is read of it.
      if (!asked.spans()) return false;
      range_->set(within);
      return sameText(range_->Text(), text_, matchCase_) && (!wholeWord_ || isWholeWord(within));
    }
    if (extendsToText(match, asked)) return true;
    within.start = match.start + 1;
    if (asked.spans() && !within.spans()) return false;
    if (!asked.spans()) within.end = within.start;
    range_->set(within);
  }
  return true;
}

/// Whether the range covers the text and nothing else.
bool ComFind::isWholeMatch(Span span) {
  return static_cast<std::size_t>(span.end - span.start) == text_.size() &&
         sameText(range_->Text(), text_, matchCase_) && (!wholeWord_ || isWholeWord(span));
}

/// Whether the text stands where Word found it, or found its beginning. The range then covers it.
bool ComFind::extendsToText(Span match, Span asked) {
  const bool shortened = given_ < text_.size();
  if (shortened) {
    range_->MoveEnd(word::wdCharacter, static_cast<std::int32_t>(text_.size() - given_));
    match = range_->span();
    if (asked.spans() && match.end > asked.end) return false;
  }
  return sameText(range_->Text(), text_, matchCase_) &&
         (!wholeWord_ || wordSeesToWords_ || isWholeWord(match));
}

bool ComFind::isWholeWord(Span span) const {
  const bool startsInside = span.start > 0 && isPartOfWord(range_->textAt({span.start - 1, span.start}));
  return !startsInside && !isPartOfWord(range_->textAt({span.end, span.end + 1}));
}

}  // namespace pluvo::word_com
