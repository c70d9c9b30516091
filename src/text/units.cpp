#include "text/units.h"

#include "checkpoints.h"
#include "unit_rules.h"

#include <utility>

namespace pluvo::text {

struct Units::State {
  State(const PieceText& pieces, std::function<bool(Position)> endsParagraph)
      : text{&pieces, std::move(endsParagraph)} {}

  UnitText text;
  Checkpoints<WordRule> words{WordRule(&text)};
  Checkpoints<SentenceRule> sentences{SentenceRule(&text)};
  Checkpoints<ParagraphRule> paragraphs{ParagraphRule(&text)};

  /// Calls use with the checkpoints of a unit.
  template <class Use>
  auto with(Unit unit, Use use) {
    switch (unit) {
      case Unit::word:
        return use(words);
      case Unit::sentence:
        return use(sentences);
      case Unit::paragraph:
        break;
    }
    return use(paragraphs);
  }
};

Units::Units(const PieceText& text, std::function<bool(Position)> endsParagraph)
    : state_(std::make_unique<State>(text, std::move(endsParagraph))) {}
Units::~Units() = default;

Position Units::count(Unit unit, Position from, Position to) const {
  if (from >= to) return 1;
  return state_->with(unit, [&](auto& starts) { return 1 + starts.count(from + 1, to); });
}

Move Units::forward(Unit unit, Position position, Position n) const {
  const Position length = state_->text.text->length();
  if (n <= 0 || position >= length) return {position, 0};
  return state_->with(unit, [&](auto& starts) -> Move {
    const auto found = starts.forward(position + 1, n);
    if (found.count == n) return {found.position, n};
    return {length, found.count + 1};
  });
}

Move Units::backward(Unit unit, Position position, Position n) const {
  if (n <= 0 || position <= 0) return {position, 0};
  return state_->with(unit, [&](auto& starts) -> Move {
    const auto found = starts.backward(position, n);
    return {found.position, found.count};
  });
}

void Units::edited(Position from, Position to, Position newLength) {
  state_->words.edited(from, to, newLength);
  state_->sentences.edited(from, to, newLength);
  state_->paragraphs.edited(from, to, newLength);
}

struct VisibleCharacters::State {
  const RunMap<Visibility>* visibility;
  View view;
  Checkpoints<VisibleRule> characters{VisibleRule(visibility, view)};

  /// Nothing needs counting where [from, to) lies in one run that the view shows.
  bool isPlain(Position from, Position to) const {
    const auto run = visibility->runAt(from);
    return to <= run.to && isVisible(run.value, view);
  }
};

VisibleCharacters::VisibleCharacters(const RunMap<Visibility>& visibility, View view)
    : state_(new State{&visibility, view}) {}
VisibleCharacters::~VisibleCharacters() = default;

Position VisibleCharacters::count(Position from, Position to) const {
  if (from >= to) return 0;
  return state_->isPlain(from, to) ? to - from : state_->characters.count(from, to);
}

Move VisibleCharacters::forward(Position position, Position n) const {
  const Position length = state_->visibility->length();
  if (n <= 0 || position >= length) return {position, 0};
  const Position near = position + std::min(n, length - position);
  if (state_->isPlain(position, near)) return {near, near - position};
  const auto found = state_->characters.forward(position, n);
  return {found.count == n ? found.position + 1 : length, found.count};
}

Move VisibleCharacters::backward(Position position, Position n) const {
  if (n <= 0 || position <= 0) return {position, 0};
  const Position near = position - std::min(n, position);
  if (state_->isPlain(near, position)) return {near, position - near};
  const auto found = state_->characters.backward(position, n);
  return {found.position, found.count};
}

void VisibleCharacters::edited(Position from, Position to, Position newLength) {
  state_->characters.edited(from, to, newLength);
}

}  // namespace pluvo::text
