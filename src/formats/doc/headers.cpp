#include "headers.h"

#include "damage.h"
#include "plc.h"

#include <algorithm>
#include <utility>

namespace pluvo::doc {

using text::Position;
using text::Span;

namespace {

constexpr std::size_t kSectionElement = 12, kShapeElement = 26;

}  // namespace

Headers::Headers(const Text& text) {
  const Plc places(text.in(Table::headerTexts), 0);
  const Plc sections(text.in(Table::sections), kSectionElement);
  const Plc shapes(text.in(Table::headerShapes), kShapeElement);
  const Position length = text.fib.length(Part::headers);
  for (std::size_t i = 0; i + 1 < sections.count(); ++i)
    breaks_.push_back(std::max(sections.place(i + 1), 0) - 1);
  mayGo_.assign(breaks_.size(), true);
  if (places.count() < kSeparators + sections.count() * kKinds) {
    if (length > 0) mayGo_.assign(breaks_.size(), false);
    return;
  }
  sections_.resize(sections.count());
  using Order = std::vector<std::pair<Position, std::size_t>>;
  Order order;  // of texts, with their sections
  Position reached = 0;
  for (std::size_t i = 0; i < sections_.size() * kKinds; ++i) {
    const Span span{places.place(kSeparators + i), places.place(kSeparators + i + 1)};
    const bool isSound = span.from >= reached && span.to >= span.from && span.to <= length;
    if (!isSound) mayGo_.assign(breaks_.size(), false);
    if (!isSound || span.empty()) continue;
    reached = span.to;
    sections_[i / kKinds][i % kKinds] = span;
    order.emplace_back(span.from, i / kKinds);
  }
  for (std::size_t i = 0; i < shapes.count(); ++i) {
    const auto after = std::ranges::upper_bound(order, shapes.place(i), {}, &Order::value_type::first);
    const std::size_t section = after == order.begin() ? 0 : (after - 1)->second;
    if (section < mayGo_.size()) mayGo_[section] = false;
  }
  // A text that a section had from before would come after others of its own.
  Section before;
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    bool hasOwn = false;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      if (!sections_[i][kind] && before[kind] && hasOwn) mayGo_[i - 1] = false;
      hasOwn = hasOwn || sections_[i][kind].has_value();
      if (sections_[i][kind]) before[kind] = sections_[i][kind];
    }
  }
}

std::vector<Position> Headers::anchorsOf(std::size_t number) const {
  if (number < kSeparators || number - kSeparators >= sections_.size() * kKinds) return {};
  const std::size_t section = (number - kSeparators) / kKinds;
  const std::size_t kind = (number - kSeparators) % kKinds;
  for (std::size_t next = section + 1; next < sections_.size(); ++next)
    if (sections_[next][kind])
      return {breaks_.begin() + static_cast<std::ptrdiff_t>(section),
              breaks_.begin() + static_cast<std::ptrdiff_t>(next)};
  return {};
}

bool Headers::mayGo(Position sectionBreak) const {
  const auto found = std::ranges::lower_bound(breaks_, sectionBreak);
  return found == breaks_.end() || *found != sectionBreak ||
         mayGo_[static_cast<std::size_t>(found - breaks_.begin())];
}

std::optional<Headers::Left> Headers::without(const std::function<bool(Position)>& isGone) const {
  Left left;
  bool goesAny = false;
  Section joined;
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      if (!sections_[i][kind]) continue;
      if (joined[kind]) left.gone.push_back(*joined[kind]);
      joined[kind] = sections_[i][kind];
    }
    if (i < breaks_.size() && isGone(breaks_[i])) {
      goesAny = true;
      if (mayGo_[i]) continue;
      throw errors::DocumentError(errors::Problem::unsupported,
                                  "A section break between different headers and footers was to be deleted; "
                                  "delete it in a word processor.");
    }
    left.texts.insert(left.texts.end(), joined.begin(), joined.end());
    joined = {};
  }
  if (!goesAny) return std::nullopt;
  std::ranges::sort(left.gone, {}, &Span::from);
  return left;
}

}  // namespace pluvo::doc
