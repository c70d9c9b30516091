#include "find.h"

#include "base/text.h"
#include "batch.h"
#include "fault.h"
#include "text.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace pluvo::word_com {

namespace {

/// Criteria that a search dialog may have left, and their values for a literal search.
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

constexpr char16_t kLineBreak = 11;
constexpr char16_t kParagraphMark = 13;
/// Word's pattern for either.
constexpr const char16_t* kAnyLineEnd = u"[^11^13]";

bool isLineEnd(char16_t unit) { return unit == kParagraphMark || unit == kLineBreak; }

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
    if (!is(sticky.property, sticky.value)) set(sticky.property, sticky.value, sticky.value);
  }
}

ComFind::~ComFind() {
  if (alike_ > 0) find_.session().log.line(base::decimal(alike_) + u" looked alike");
}

/// A flag at its resting value asks for nothing: where Word does not let it be set, the search goes on
/// without.
void ComFind::set(const wchar_t* flag, bool value, bool resting) const {
  Session& session = find_.session();
  if (value == resting && session.unsetFlags.contains(flag)) return;
  try {
    find_.put(flag, Arguments().boolean(value));
  } catch (const errors::Fault& fault) {
    if (value != resting || fault.number == kServerGone || isBusy(static_cast<HRESULT>(fault.number))) throw;
    session.unsetFlags.insert(flag);
    session.log.line(u"Find." + std::u16string(utf16(flag)) + u" is left as it is from now on");
  }
}

/// A property that cannot be read does not matter.
bool ComFind::is(const wchar_t* property, bool value) const {
  try {
    return find_.get(property).toBoolean() == value;
  } catch (const errors::Fault& fault) {
    if (fault.number == kServerGone) throw;
    return true;
  }
}

/// The longest beginning of the line that Word takes.
ComFind::Proposal ComFind::beginningOf(std::u16string_view line) {
  Proposal proposal;
  for (const char16_t unit : line) {
    const std::size_t length = unit == u'^' ? 2 : 1;
    if (proposal.written.size() + length > word::Find::kLongestText) break;
    proposal.written.append(length, unit);
    ++proposal.given;
  }
  // Half a character is found nowhere.
  if (proposal.given < line.size() && IS_HIGH_SURROGATE(proposal.written.back())) {
    proposal.written.pop_back();
    --proposal.given;
  }
  return proposal;
}

ComFind::Proposal ComFind::longestLineOf(std::u16string_view text) {
  std::u16string_view longest;
  for (std::size_t from = 0; from < text.size();) {
    const std::u16string_view line = text.substr(from, text.substr(from).find(kParagraphMark));
    if (line.size() > longest.size()) longest = line;
    from += line.size() + 1;
  }
  if (longest.empty() && !text.empty()) return {kAnyLineEnd, 0, 1, true};
  Proposal proposal = beginningOf(longest);
  if (!longest.empty()) proposal.before = static_cast<std::size_t>(longest.data() - text.data());
  return proposal;
}

void ComFind::Text(const std::u16string& text) {
  lookFor(std::make_shared<const std::u16string>(text), beginningOf(text));
}

void ComFind::WholeText(std::shared_ptr<const std::u16string> text) {
  Proposal proposal = longestLineOf(*text);
  lookFor(std::move(text), std::move(proposal));
}

void ComFind::lookFor(std::shared_ptr<const std::u16string> text, Proposal proposal) {
  find_.put(L"Text", Arguments().text(proposal.written));
  text_ = std::move(text);
  proposal_ = std::move(proposal);
  if (wholeWord_) MatchWholeWord(true);
}

void ComFind::MatchCase(bool value) {
  set(L"MatchCase", value, false);
  matchCase_ = value;
}

/// Word itself sees to it for a text of one word, and what counts as more than one it does not tell. The end
/// of a shortened text is inside a word perhaps.
void ComFind::MatchWholeWord(bool value) {
  wordSeesToWords_ = value && !isShortened() && isOneWord(*text_);
  set(L"MatchWholeWord", wordSeesToWords_, false);
  wholeWord_ = value;
}

bool ComFind::executeInWord() const {
  constexpr int kParameters = 15;
  return find_.call(L"Execute", Arguments().missing(kParameters)).toBoolean();
}

bool ComFind::Execute() {
  const Span asked = range_->span();
  // Only meanwhile: Word's own dialog keeps its last search.
  std::optional<ComSwitched> pattern;
  if (proposal_.isLineEnd) pattern.emplace(find_, L"MatchWildcards", true);
  const bool found = findsWithin(asked);
  if (!found && range_->span() != asked) range_->set(asked);
  return found;
}

bool ComFind::findsWithin(Span asked) {
  // What Word makes of an empty text is its own business, but not a text.
  if (text_->empty()) return executeInWord() && !range_->span().spans();

  Span within = asked;
  // Word does not find a text that is the whole range.
  while (!(asked.spans() && isWholeMatch(within))) {
    const bool found = executeInWord();
    const Span match = found ? range_->span() : within;
    const bool ranOn = asked.spans() && match.end > asked.end;
    const bool isBefore = match.start < within.start;
    if (found && isBefore && !ranOn && match.end > within.start) {
      // Word began farther up than it was told, in the middle of a field perhaps.
      find_.session().log.line(u"a match began before its search");
      within.start = match.end;
      if (asked.spans() && !within.spans()) return false;
      if (!asked.spans()) within.end = within.start;
      range_->set(within);
      continue;
    }
    if (!found || ranOn || isBefore) {
      // Hidden text makes a range longer than its text as read.
      if (!asked.spans()) return false;
      range_->set(within);
      return isText() && (!wholeWord_ || isWholeWord(within));
    }
    if (extendsToText(match, asked)) return true;
    tellRejected(match);
    within.start = match.start + 1;
    if (asked.spans() && !within.spans()) return false;
    if (!asked.spans()) within.end = within.start;
    range_->set(within);
  }
  return true;
}

/// Whether the range's text is the text asked for.
bool ComFind::isText() {
  read_ = range_->Text();
  std::ranges::replace(read_, kLineBreak, kParagraphMark);
  return sameText(read_, *text_, matchCase_);
}

/// Such as words with an optional hyphen, or characters of a symbol's font.
void ComFind::tellRejected(Span match) {
  ++alike_;
  const WordLog& log = find_.session().log;
  if (!log.isOn()) return;
  std::u16string line = u"a match of " + base::decimal(match.end - match.start) + u" positions, read as " +
                        base::decimal(static_cast<std::int64_t>(read_.size())) +
                        u" characters, is not the text of " +
                        base::decimal(static_cast<std::int64_t>(text_->size()));
  if (log.hasTexts()) line += u": \"" + read_ + u"\" for \"" + *text_ + u"\"";
  find_.session().log.line(line);
}

/// Whether the range covers the text and nothing else.
bool ComFind::isWholeMatch(Span span) {
  return static_cast<std::size_t>(span.end - span.start) == text_->size() && isText() &&
         (!wholeWord_ || isWholeWord(span));
}

/// Whether the text stands where Word found it, or around a part of it. The range then covers it.
bool ComFind::extendsToText(Span match, Span asked) {
  if (isShortened()) {
    const auto before = static_cast<std::int32_t>(proposal_.before);
    const auto after = static_cast<std::int32_t>(text_->size() - proposal_.before - proposal_.given);
    if (match.start - asked.start < before) return false;
    if (before > 0) range_->MoveStart(word::wdCharacter, -before);
    if (after > 0) range_->MoveEnd(word::wdCharacter, after);
    match = range_->span();
    if (match.start < asked.start || (asked.spans() && match.end > asked.end)) return false;
  }
  return isText() && (!wholeWord_ || wordSeesToWords_ || isWholeWord(match));
}

bool ComFind::isWholeWord(Span span) const {
  const bool startsInside = !isLineEnd(text_->front()) && span.start > 0 &&
                            isPartOfWord(range_->textAt({span.start - 1, span.start}));
  return !startsInside &&
         (isLineEnd(text_->back()) || !isPartOfWord(range_->textAt({span.end, span.end + 1})));
}

}  // namespace pluvo::word_com
