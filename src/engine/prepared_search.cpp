#include "prepared_search.h"

#include "base/text.h"
#include "errors/fault.h"
#include "errors/numbers.h"

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

}  // namespace

std::u16string NormalizeSearchText(errors::Context& context, std::u16string_view text) {
  return errors::guarded(context, u"cpf:38", [&] { return withoutLineFeeds(text); });
}

std::u16string normalizedText(std::u16string_view text, bool liftLimits) {
  return liftLimits ? withOneLineEnd(text) : withoutLineFeeds(text);
}

std::u16string withOneLineEnd(std::u16string_view text) {
  std::u16string result = base::withParagraphMarks(text);
  std::replace(result.begin(), result.end(), kLineBreak, kParagraphMark);
  return result;
}

std::int16_t CountParagraphMarks(errors::Context& context, std::u16string_view text) {
  return errors::guarded(context, u"cpf:37", [&] {
    return errors::narrow(static_cast<std::int32_t>(std::count(text.begin(), text.end(), kParagraphMark)));
  });
}

SearchText::SearchText(std::u16string normalizedText, bool liftLimits) {
  if (liftLimits) {
    whole = std::make_shared<const std::u16string>(std::move(normalizedText));
    wholeHasLineEnd = whole->find(kParagraphMark) != std::u16string::npos;
    return;
  }
  full = std::move(normalizedText);
  search = full.substr(0, std::min(full.size(), kMostForFind));
  if (const std::size_t mark = search.find(kParagraphMark); mark != std::u16string::npos) search.resize(mark);
  cut = search.size() < full.size();
}

void PreparedSearch::take(errors::Context& context, Request& request) {
  if (request.extraSpace) extraSpace = u" ";
  highlightColour = request.highlightColour;
  for (std::u16string* searched : {&request.beginBlock, &request.endBlock, &request.insideBlock})
    *searched = request.liftLimits ? withOneLineEnd(*searched) : NormalizeSearchText(context, *searched);
  begin = SearchText(request.beginBlock, request.liftLimits);
  end = SearchText(request.endBlock, request.liftLimits);
  inside = SearchText(request.insideBlock, request.liftLimits);
  text = request.text;
  location = request.operationLocation;
  operation = request.operation;
  beforeOrAfter = request.beforeOrAfter;
  unitType = request.unitsApartType;
  wholeWords = request.wholeWords && !begin.cut && !end.cut && !inside.cut;
  matchCase = request.matchCase;
  liftLimits = request.liftLimits;
}

void PreparedSearch::takeDistance(const Request& request) {
  distance = request.unitsApart == kSame ? std::int16_t{0} : errors::toInteger(request.unitsApart);
}

}  // namespace pluvo::engine
