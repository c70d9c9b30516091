#include "prepared_search.h"

#include "base/text.h"
#include "errors/fault.h"
#include "errors/numbers.h"
#include "word/word_processor.h"

#include <algorithm>
#include <utility>

namespace pluvo::engine {

namespace {

constexpr char16_t kLineFeed = 10;
constexpr char16_t kLineBreak = 11;
constexpr char16_t kParagraphMark = 13;

std::u16string withoutLineFeeds(std::u16string_view text) {
  std::u16string result(text);
  result.erase(std::remove(result.begin(), result.end(), kLineFeed), result.end());
  std::replace(result.begin(), result.end(), kLineBreak, kParagraphMark);
  return result;
}

/// As texts are searched for whole: every line end of any kind becomes one paragraph mark.
std::u16string withOneLineEnd(std::u16string_view text) {
  std::u16string result = base::withParagraphMarks(text);
  std::replace(result.begin(), result.end(), kLineBreak, kParagraphMark);
  return result;
}

}  // namespace

std::u16string NormalizeSearchText(Trail& trail, std::u16string_view text) {
  return errors::guarded(trail, u"cpf:38", [&] { return withoutLineFeeds(text); });
}

std::int16_t CountParagraphMarks(Trail& trail, std::u16string_view text) {
  return errors::guarded(trail, u"cpf:37", [&] {
    return errors::narrow(static_cast<std::int32_t>(std::count(text.begin(), text.end(), kParagraphMark)));
  });
}

SearchedText searchedText(std::u16string_view text, bool liftLimits) {
  const SearchText made(liftLimits ? withOneLineEnd(text) : withoutLineFeeds(text), liftLimits);
  if (made.whole) return {*made.whole, *made.whole};
  return {made.full, made.search};
}

SearchText::SearchText(std::u16string normalizedText, bool liftLimits) {
  if (liftLimits) {
    whole = std::make_shared<const std::u16string>(std::move(normalizedText));
    wholeHasLineEnd = whole->find(kParagraphMark) != std::u16string::npos;
    return;
  }
  full = std::move(normalizedText);
  search = full.substr(0, std::min(full.size(), word::Find::kLongestText));
  if (const std::size_t mark = search.find(kParagraphMark); mark != std::u16string::npos) search.resize(mark);
  cut = search.size() < full.size();
}

PreparedSearch::PreparedSearch(Trail& trail, const Request& asked) : request(asked) {
  const auto prepared = [&](const std::u16string& text) {
    return SearchText(asked.liftLimits ? withOneLineEnd(text) : NormalizeSearchText(trail, text),
                      asked.liftLimits);
  };
  begin = prepared(asked.begin);
  end = prepared(asked.end);
  inside = prepared(asked.inside);
  wholeWords = asked.wholeWords && !begin.cut && !end.cut && !inside.cut;
  const std::u16string_view space = asked.extraSpace ? u" " : u"";
  insertion = asked.text;
  insertion.insert(asked.place == kAfter ? 0 : insertion.size(), space);
}

}  // namespace pluvo::engine
