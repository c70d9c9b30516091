#include "gone_texts.h"

#include "text/folding.h"

#include <algorithm>

namespace pluvo::doc {

namespace {

using View = std::u16string_view;

/// Letters and digits, roughly: whatever is no blank, sign or control.
bool isOfWord(char16_t unit) {
  if (unit < 0x80)
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
  if (unit < 0xC0) return unit == 0xAA || unit == 0xB5 || unit == 0xBA;
  return unit != 0xD7 && unit != 0xF7 && (unit < 0x2000 || unit > 0x2BFF) &&
         (unit < 0x2E00 || unit > 0x2E7F) && (unit < 0x3000 || unit > 0x3004) &&
         (unit < 0x3008 || unit > 0x3020) && (unit < 0xFF00 || unit > 0xFF0F);
}

/// Of writing without blanks, in which each character counts as a word.
bool standsAlone(char16_t unit) { return unit >= 0x2E80 && unit < 0xAC00; }

/// Whether a word begins, or another one than the last.
bool isEdge(View text, std::size_t at) {
  if (at == 0 || at == text.size()) return true;
  return !isOfWord(text[at - 1]) || !isOfWord(text[at]) || standsAlone(text[at - 1]) || standsAlone(text[at]);
}

template <class Visit>
void forEachWord(View text, Visit visit) {
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at + 1;
    while (isOfWord(text[at]) && !isEdge(text, end)) ++end;
    if (isOfWord(text[at])) visit(at, text.substr(at, end - at));
    at = end;
  }
}

/// The places of a phrase among whole words, until visit(place) returns true.
template <class Visit>
void forEachPlace(View text, View phrase, Visit visit) {
  for (std::size_t at = text.find(phrase); at != text.npos; at = text.find(phrase, at + 1))
    if (isEdge(text, at) && isEdge(text, at + phrase.size()) && visit(at)) return;
}

bool holds(View text, View phrase) {
  bool found = false;
  forEachPlace(text, phrase, [&](std::size_t) { return found = true; });
  return found;
}

/// From its first word to its last.
View trimmed(View text) {
  while (!text.empty() && !isOfWord(text.front())) text.remove_prefix(1);
  while (!text.empty() && !isOfWord(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

void GoneTexts::addShort(View text) {
  const std::u16string folded = text::foldCase(text);
  const View phrase = trimmed(folded);
  if (phrase.empty()) return;
  forEachWord(phrase, [&](std::size_t, View word) { known_.emplace(word); });
  short_.emplace_back(phrase);
  longest_ = std::max(longest_, phrase.size());
}

void GoneTexts::addDeleted(View text) {
  const std::u16string folded = text::foldCase(text);
  const View phrase = trimmed(folded);
  bool hasOnlyKnown = true;
  std::size_t known = 0;
  forEachWord(phrase, [&](std::size_t, View word) {
    const bool isKnown = known_.contains(word);
    known += isKnown ? 1 : 0;
    hasOnlyKnown = hasOnlyKnown && isKnown;
    if (isKnown) words_.emplace(word);
  });
  if (known == 0 || phrases_.contains(phrase)) return;
  for (const std::u16string& each : short_) {
    if (hasOnlyKnown && holds(each, phrase)) phrases_.emplace(phrase);
    if (phrase.size() > each.size() && !phrases_.contains(each) && holds(phrase, each)) phrases_.insert(each);
  }
}

void GoneTexts::addStanding(View text) {
  constexpr std::size_t kAtOnce = 1U << 16U;
  standing_ += text::foldCase(text);
  if (standing_.size() < kAtOnce + longest_) return;
  // A phrase may go on with what follows, and so may a word.
  std::size_t end = standing_.size() - longest_;
  while (end > 0 && !isEdge(standing_, end)) --end;
  dropStanding(end);
}

void GoneTexts::dropStanding(std::size_t end) {
  std::erase_if(phrases_, [&](const std::u16string& phrase) { return holds(standing_, phrase); });
  forEachWord(View(standing_).substr(0, end), [&](std::size_t, View word) {
    const auto found = words_.find(word);
    if (found != words_.end()) words_.erase(found);
  });
  standing_.erase(0, end);
}

std::vector<bool> GoneTexts::in(View text) const {
  const std::u16string folded = text::foldCase(text);
  std::vector<bool> gone(text.size());
  const auto mark = [&](std::size_t at, std::size_t size) {
    for (std::size_t i = at; i < at + size; ++i) gone[i] = true;
  };
  forEachWord(folded, [&](std::size_t at, View word) {
    if (words_.contains(word)) mark(at, word.size());
  });
  for (const std::u16string& phrase : phrases_)
    forEachPlace(folded, phrase, [&](std::size_t at) { return mark(at, phrase.size()), false; });
  return gone;
}

}  // namespace pluvo::doc
