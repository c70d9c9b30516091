#include "phrase_finder.h"

#include <algorithm>
#include <numeric>

namespace pluvo::doc {

using View = std::u16string_view;

namespace {

/// Of writing without blanks, in which each character counts as a word.
bool standsAlone(char16_t unit) { return unit >= 0x2E80 && unit < 0xAC00; }

std::uint64_t edge(std::uint32_t place, std::uint32_t word) { return std::uint64_t{place} << 32U | word; }

}  // namespace

bool isOfWord(char16_t unit) {
  if (unit < 0x80)
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
  if (unit < 0xC0) return unit == 0xAA || unit == 0xB5 || unit == 0xBA;
  return unit != 0xD7 && unit != 0xF7 && (unit < 0x2000 || unit > 0x2BFF) &&
         (unit < 0x2E00 || unit > 0x2E7F) && (unit < 0x3000 || unit > 0x3004) &&
         (unit < 0x3008 || unit > 0x3020) && (unit < 0xFF00 || unit > 0xFF0F);
}

bool isEdge(View text, std::size_t at) {
  if (at == 0 || at == text.size()) return true;
  return !isOfWord(text[at - 1]) || !isOfWord(text[at]) || standsAlone(text[at - 1]) || standsAlone(text[at]);
}

PhraseFinder::Word PhraseFinder::numberOf(View word) const {
  const auto found = numbers_.find(word);
  return found == numbers_.end() ? kUnknown : found->second;
}

PhraseFinder::Word PhraseFinder::numbered(View word) {
  if (const Word known = numberOf(word); known != kUnknown) return known;
  const auto next = static_cast<Word>(withoutGap_.size());
  withoutGap_.push_back(next);
  numbers_.emplace(word, next);
  return next;
}

void PhraseFinder::add(View phrase) {
  Place place = kBegin;
  forEachWord(phrase, true, [&](View withGap, View word, std::size_t) {
    const Word number = numbered(place == kBegin ? word : withGap);
    withoutGap_[number] = numbered(word);
    const auto [known, isNew] = edges_.emplace(edge(place, number), static_cast<Place>(nodes_.size()));
    if (isNew) nodes_.push_back({place, number, nodes_[place].words + 1});
    place = known->second;
  });
  if (place == kBegin || nodes_[place].phrase != kNone) return;
  nodes_[place].phrase = phrases_.size();
  phrases_.emplace_back(phrase);
}

PhraseFinder::Place PhraseFinder::step(Place place, Word withGap, Word word) const {
  for (; place != kBegin; place = nodes_[place].shorter)
    if (const auto found = edges_.find(edge(place, withGap)); found != edges_.end()) return found->second;
  const auto found = edges_.find(edge(kBegin, word));
  return found == edges_.end() ? kBegin : found->second;
}

PhraseFinder::Place PhraseFinder::after(Place place, View withGap, View word) const {
  return step(place, numberOf(withGap), numberOf(word));
}

void PhraseFinder::link() {
  std::vector<Place> order(nodes_.size());
  std::iota(order.begin(), order.end(), kBegin);
  std::ranges::stable_sort(order, {}, [&](Place place) { return nodes_[place].words; });
  for (const Place place : order) {
    Node& node = nodes_[place];
    if (node.words > 1) node.shorter = step(nodes_[node.before].shorter, node.word, withoutGap_[node.word]);
    node.ends = node.phrase != kNone ? place : nodes_[node.shorter].ends;
  }
}

}  // namespace pluvo::doc
