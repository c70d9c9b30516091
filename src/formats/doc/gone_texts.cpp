#include "gone_texts.h"

#include "text/folding.h"

#include <algorithm>
#include <utility>

namespace pluvo::doc {

namespace {

using View = std::u16string_view;

/// From its first word to its last.
View trimmed(View text) {
  while (!text.empty() && !isOfWord(text.front())) text.remove_prefix(1);
  while (!text.empty() && !isOfWord(text.back())) text.remove_suffix(1);
  return text;
}

/// Marks each phrase that a text holds.
void setHeld(const PhraseFinder& phrases, View text, std::vector<bool>& said) {
  PhraseFinder::Place place = PhraseFinder::kBegin;
  forEachWord(text, true, [&](View withGap, View word, std::size_t) {
    place = phrases.after(place, withGap, word);
    phrases.forEachEnding(place, [&](std::size_t number) {
      // Where this was held before, so were the shorter ones in it.
      const bool isNew = !said[number];
      said[number] = true;
      return isNew;
    });
  });
}

}  // namespace

void GoneTexts::addShort(View text) {
  const std::u16string folded = text::foldCase(text);
  const View phrase = trimmed(folded);
  forEachWord(phrase, true, [&](View, View word, std::size_t) { known_.emplace(word); });
  short_.add(phrase);
  longest_ = std::max(longest_, phrase.size());
}

void GoneTexts::addDeleted(View text) {
  if (isShortDeleted_.empty()) {
    short_.link();
    isShortDeleted_.resize(short_.phrases().size());
  }
  const std::u16string folded = text::foldCase(text);
  const View phrase = trimmed(folded);
  bool hasOnlyKnown = true;
  forEachWord(phrase, true, [&](View, View word, std::size_t) {
    const bool isKnown = known_.contains(word);
    hasOnlyKnown = hasOnlyKnown && isKnown;
    if (isKnown) words_.emplace(word);
  });
  setHeld(short_, phrase, isShortDeleted_);
  if (hasOnlyKnown && phrase.size() <= longest_) deleted_.add(phrase);
}

/// The deleted phrases that short texts hold, and the short texts that were deleted.
void GoneTexts::gatherPhrases() {
  deleted_.link();
  std::vector<bool> isHeld(deleted_.phrases().size());
  for (const std::u16string& each : short_.phrases()) setHeld(deleted_, each, isHeld);
  for (std::size_t i = 0; i < isHeld.size(); ++i)
    if (isHeld[i]) phrases_.add(deleted_.phrases()[i]);
  for (std::size_t i = 0; i < isShortDeleted_.size(); ++i)
    if (isShortDeleted_[i]) phrases_.add(short_.phrases()[i]);
  phrases_.link();
  isPhraseGone_.resize(phrases_.phrases().size(), true);
}

void GoneTexts::addStanding(View text) {
  standing_ += text::foldCase(text);
  dropStanding(false);
}

void GoneTexts::dropStanding(bool isWhole) {
  if (!std::exchange(areGathered_, true)) gatherPhrases();
  const std::size_t end = forEachWord(standing_, isWhole, [&](View withGap, View word, std::size_t) {
    if (const auto found = words_.find(word); found != words_.end()) words_.erase(found);
    place_ = phrases_.after(place_, withGap, word);
    phrases_.forEachEnding(place_, [&](std::size_t number) {
      const bool isNew = isPhraseGone_[number];
      isPhraseGone_[number] = false;
      return isNew;
    });
  });
  standing_.erase(0, end);
  // A longer gap or word than any that is known stays one.
  if (standing_.size() > longest_) standing_.erase(0, standing_.size() - longest_ - 1);
}

std::vector<bool> GoneTexts::in(View text) const {
  const std::u16string folded = text::foldCase(text);
  std::vector<int> covers(text.size() + 1);  // how many begin at each unit less those that end before it
  const auto cover = [&](std::size_t end, std::size_t size) {
    ++covers[end - size];
    --covers[end];
  };
  PhraseFinder::Place place = PhraseFinder::kBegin;
  forEachWord(folded, true, [&](View withGap, View word, std::size_t end) {
    if (words_.contains(word)) cover(end, word.size());
    place = phrases_.after(place, withGap, word);
    phrases_.forEachEnding(place, [&](std::size_t number) {
      if (isPhraseGone_[number]) cover(end, phrases_.phrases()[number].size());
      return !isPhraseGone_[number];
    });
  });
  std::vector<bool> gone(text.size());
  int over = 0;
  for (std::size_t i = 0; i < gone.size(); ++i) gone[i] = (over += covers[i]) > 0;
  return gone;
}

}  // namespace pluvo::doc
