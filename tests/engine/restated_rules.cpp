#include "engine/restated_rules.h"

#include "errors/text.h"

#include <algorithm>
#include <cwctype>

namespace pluvo::engine {

namespace {

constexpr auto kAll = std::u16string::npos;

std::u16string marksFor(std::u16string text) {
  std::replace(text.begin(), text.end(), u'\v', u'\r');
  return text;
}
bool isCut(const std::u16string& text) { return text.size() > 255 || marksFor(text).find(u'\r') != kAll; }
std::u16string firstLine(const std::u16string& text) {
  return text.substr(0, std::min<std::size_t>(255, marksFor(text).find(u'\r')));
}
bool isWord(char16_t c) { return std::iswalnum(c) != 0; }

std::string notationOf(const std::u16string& text) {
  std::string result;
  for (const char16_t c : text)
    result += c == u'\r' ? std::string("¶") : std::string(1, static_cast<char>(c));
  return result;
}

}  // namespace

RestatedRules::RestatedRules(std::u16string content, Asked asked, bool extraSpace)
    : text(std::move(content)),
      highlighted(text.size()),
      asked_(std::move(asked)),
      space_(extraSpace ? u" " : u""),
      wholeWords_(asked_.wholeWords && !isCut(asked_.begin) && !isCut(asked_.end) && !isCut(asked_.inside)) {}

bool RestatedRules::find(const std::u16string& needle, Place within, Place& match) const {
  if (needle.empty()) return false;
  for (std::size_t at = within.from; at + needle.size() <= within.to; ++at) {
    const auto same = [&](char16_t a, char16_t b) {
      return a == b || (!asked_.matchCase && std::towlower(a) == std::towlower(b));
    };
    if (!std::equal(needle.begin(), needle.end(), text.begin() + static_cast<std::ptrdiff_t>(at), same))
      continue;
    const std::size_t end = at + needle.size();
    const bool whole = (at == 0 || !isWord(text[at - 1])) && (end == text.size() || !isWord(text[end]));
    if (wholeWords_ && !whole) continue;
    match = {at, end};
    return true;
  }
  return false;
}

bool RestatedRules::matchesInFull(const std::u16string& full, Place& match) const {
  if (!isCut(full)) return true;
  if (marksFor(text.substr(match.from, full.size())) != marksFor(full)) return false;
  match.to = match.from + full.size();
  return true;
}

bool RestatedRules::tooFar(const Block& block) const {
  if (asked_.end.empty() || asked_.unit == kEntireDocument) return false;
  notation::Sample sample(notationOf(text));
  const auto count = [&](Place place) {
    const auto range =
        sample.document->Range(static_cast<std::int32_t>(place.from), static_cast<std::int32_t>(place.to));
    if (asked_.unit == kWords) return range->Words().Count();
    return asked_.unit == kSentences ? range->Sentences().Count() : range->Paragraphs().Count();
  };
  const std::int32_t distance = asked_.apart == kSame ? 0 : errors::toInteger(asked_.apart);
  return count(block.whole) - count(block.begin) - count(block.end) > distance;
}

bool RestatedRules::accept(Block& block) const {
  if (!matchesInFull(asked_.begin, block.begin)) return false;
  if (asked_.end.empty()) block.whole = block.begin;
  if (!asked_.end.empty()) {
    if (!matchesInFull(asked_.end, block.end)) return false;
    block.whole.to = block.end.to;
  }
  if (asked_.inside.empty()) return true;
  if (asked_.end.empty() || block.begin.to >= block.end.from) return false;
  return find(firstLine(asked_.inside), {block.begin.to, block.end.from}, block.inside) &&
         matchesInFull(asked_.inside, block.inside);
}

void RestatedRules::pass() {
  std::size_t from = 0;
  Block block;
  while (find(firstLine(asked_.begin), {from, text.size()}, block.begin)) {
    block.whole = block.begin;
    if (!asked_.end.empty()) {
      if (!find(firstLine(asked_.end), {block.begin.to, text.size()}, block.end)) return;
      block.whole.to = block.end.to;
    }
    if (tooFar(block)) {
      from = block.begin.to;
    } else if (!accept(block)) {
      from = block.whole.to;
    } else {
      blocks.push_back(block.whole);
      from = operate(block);
    }
  }
}

std::size_t RestatedRules::operate(Block& block) {
  Place* places[] = {&block.whole, &block.begin, &block.end, &block.inside};
  Place& on = *places[asked_.on];
  Place ignored;
  Place& other = asked_.on == kSelection ? ignored : block.whole;
  switch (asked_.operation) {
    case kInsert: {
      const bool after = asked_.place == kAfter;
      Place gap = after ? Place{on.to, on.to} : Place{on.from, on.from};
      const std::u16string inserted = after ? space_ + asked_.text : asked_.text + space_;
      replace(gap, inserted, other);
      on.to += inserted.size();
      break;
    }
    case kReplace:
      replace(on, asked_.text, other);
      break;
    case kDelete:
      replace(on, {}, other);
      break;
    case kHighlight:
      std::fill(highlighted.begin() + static_cast<std::ptrdiff_t>(on.from),
                highlighted.begin() + static_cast<std::ptrdiff_t>(on.to), true);
      break;
    default:
      return block.whole.to;
  }
  return std::max(block.whole.to, on.to);
}

/// The other place is not empty, and follows its text.
void RestatedRules::replace(Place& what, const std::u16string& with, Place& other) {
  const Place old = what;
  text.replace(old.from, old.to - old.from, with);
  what.to = what.from + with.size();
  const bool insertion = old.from == old.to;
  const auto moved = [&](std::size_t position) { return position - (old.to - old.from) + with.size(); };
  if (other.from > old.from) other.from = other.from < old.to ? old.from : moved(other.from);
  if (other.to > old.from || (insertion && other.to == old.from))
    other.to = other.to < old.to ? what.to : moved(other.to);
}

}  // namespace pluvo::engine
