#include "document/find_memory.h"

#include <algorithm>

namespace pluvo::document {

using text::Position;
using text::Span;
using text::View;

namespace {

/// How far a whole word depends on its neighbours: one character, which may be a surrogate pair.
constexpr Position kNeighbour = 2;

/// A pass looks for three texts; a preview and a second pass may add theirs.
constexpr std::size_t kMostEntries = 8;

}  // namespace

Span FindMemory::findOrNone(const Query& query, Span span, View view) {
  constexpr Span kNothing;
  if (query.text->empty() || span.empty() || query.text->size() > static_cast<std::size_t>(span.length())) {
    return kNothing;
  }
  Entry& entry = entryOf(query, view);
  Position clear = span.from;
  if (const Position near = findNear(entry, span, clear); near != kNone) return {near, near + query.length()};
  if (clear == span.to) return kNothing;
  const bool usable = entry.known && span.from <= entry.known->clear &&
                      (span.from >= entry.known->from || reachBack(entry, span));
  if (!usable) {
    if (!entry.known) entry.known = Known{};
    entry.known->from = span.from;
  }
  if (!usable || entry.known->clear < clear) {
    entry.known->clear = clear;
    entry.known->match.reset();
  }
  if (!entry.known->match && entry.known->clear < span.to) searchOn(entry, span.to);

  const auto& match = entry.known->match;
  return match && match->to <= span.to ? *match : kNothing;
}

/// Where a match begins in the first piece of a span. Where none does, clear is how far no match begins: the
/// span's end where it has none.
Position FindMemory::findNear(Entry& entry, Span span, Position& clear) const {
  if (entry.inOriginal == nullptr || !showsAll(entry.view)) return kNone;
  const text::Piece piece = text_.pieceAt(span.from);
  if (piece.isNew()) return kNone;
  const Position length = std::min(piece.length, span.length());
  const Position match = entry.inOriginal->first(piece.original, piece.original + length);
  if (match != kNone) return span.from + (match - piece.original);
  if (entry.inOriginal->gaveUp()) {
    entry.inOriginal.reset();
  } else if (length == span.length()) {
    clear = span.to;
  } else {
    clear += std::max(length - entry.query.length() + 1, 0);
  }
  return kNone;
}

/// Extends the known stretch to the front, so that it begins where the span does, unless the span ends before
/// it.
bool FindMemory::reachBack(Entry& entry, Span span) const {
  Known& known = *entry.known;
  if (span.to < known.from) return false;
  // Any match that begins in the gap ends before this.
  const Position to = onward(entry.view, known.from, entry.query.length() - 1);
  const auto match = search(entry, span.from, to);
  if (match && match->from < known.from) {
    known.clear = match->from;
    known.match = match;
  }
  known.from = span.from;
  return true;
}

void FindMemory::searchOn(Entry& entry, Position to) const {
  Known& known = *entry.known;
  known.match = search(entry, known.clear, to);
  if (known.match) {
    known.clear = known.match->from;
  } else if (to == text_.length()) {
    known.clear = to;
  } else {
    // What begins later may end after the bound.
    known.clear = std::max(known.clear, back(entry.view, to, entry.query.length() - 1));
  }
}

std::optional<Span> FindMemory::search(const Entry& entry, Position from, Position to) const {
  if (const text::VisibleText* const shown = shownIn(entry.view))
    return entry.search.find(*shown, text_, visibility_, entry.view, from, to);
  return entry.search.find(text_, visibility_, entry.view, from, to);
}

/// The text the view shows, gathered, where it lies in many short stretches. Each find would gather it anew.
const text::VisibleText* FindMemory::shownIn(View view) const {
  constexpr std::size_t kFew = 64;
  constexpr std::size_t kShort = 1024;
  const std::size_t runs = visibility_.runCount();
  if (wasEdited_ || runs < kFew || runs < static_cast<std::size_t>(text_.length()) / kShort) return nullptr;
  const auto known =
      std::find_if(shown_.begin(), shown_.end(), [&](const Shown& shown) { return shown.view == view; });
  if (known != shown_.end()) return &known->text;
  const std::optional<text::Stretch> whole = text_.wholeStretch();
  if (!whole) return nullptr;
  shown_.push_back({view, text::VisibleText(*whole, visibility_, view)});
  return &shown_.back().text;
}

void FindMemory::edited(Span replaced, Position newLength) {
  if (!wasEdited_) shown_.clear();
  wasEdited_ = true;
  for (Entry& entry : entries_) {
    if (!entry.known) continue;
    if (replaced.to <= entry.known->clear) {
      followEdit(entry, replaced, newLength);
    } else {
      keepBefore(entry, replaced.from);
    }
  }
}

/// After an edit in front of clear: the known stretch moves along, and the place of the edit is searched
/// anew.
void FindMemory::followEdit(Entry& entry, Span replaced, Position newLength) const {
  Known& known = *entry.known;
  const Position shift = newLength - replaced.length();
  const Position after = replaced.from + newLength;
  if (known.from >= replaced.to) {
    known.from += shift;
  } else if (known.from > replaced.from) {
    known.from = after;
  }
  known.clear += shift;
  if (known.match) known.match = Span{known.match->from + shift, known.match->to + shift};

  const Position reach = entry.query.length() + kNeighbour;
  const Position from = std::max(known.from, back(entry.view, replaced.from, reach));
  const auto match = search(entry, from, onward(entry.view, after, reach));
  if (match && match->from <= known.clear) {
    known.clear = match->from;
    known.match = match;
  } else if (known.clear < onward(entry.view, after, kNeighbour)) {
    known.match.reset();  // its neighbour is another now
  }
}

/// After an edit at or after clear: matches that end in front of it stay known. So does the match, if the
/// character after it stays.
void FindMemory::keepBefore(Entry& entry, Position edit) const {
  Known& known = *entry.known;
  if (known.match && back(entry.view, edit, kNeighbour) >= known.match->to) return;
  known.match.reset();
  known.clear = std::min(known.clear, back(entry.view, edit, entry.query.length() + kNeighbour));
  if (known.from > known.clear) entry.known.reset();
}

FindMemory::Entry& FindMemory::entryOf(const Query& query, View view) {
  ++uses_;
  // A pass asks with the same few texts again and again.
  auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.query.text == query.text && entry.view == view && entry.query.flags == query.flags;
  });
  if (found == entries_.end()) {
    found = std::find_if(entries_.begin(), entries_.end(),
                         [&](const Entry& entry) { return entry.view == view && entry.query == query; });
  }
  if (found == entries_.end()) {
    if (entries_.size() == kMostEntries) {
      entries_.erase(std::min_element(entries_.begin(), entries_.end(),
                                      [](const Entry& a, const Entry& b) { return a.lastUse < b.lastUse; }));
    }
    text::Search search(*query.text, query.flags);
    auto inOriginal = text::OriginalMatches::of(search, text_.original());
    entries_.push_back({query, view, std::move(search), std::move(inOriginal), 0, std::nullopt});
    found = entries_.end() - 1;
  }
  found->lastUse = uses_;
  return *found;
}

bool FindMemory::showsAll(View view) const {
  const text::Visibility* const only = visibility_.onlyValue();
  return only != nullptr && text::isVisible(*only, view);
}

Position FindMemory::back(View view, Position position, Position n) const {
  if (showsAll(view)) return position - std::min(n, position);
  while (n > 0 && position > 0) {
    const auto run = visibility_.runAt(position - 1);
    const bool visible = text::isVisible(run.value, view);
    const Position step = visible ? std::min(n, position - run.from) : position - run.from;
    position -= step;
    if (visible) n -= step;
  }
  return position;
}

Position FindMemory::onward(View view, Position position, Position n) const {
  if (showsAll(view)) return position + std::min(n, text_.length() - position);
  while (n > 0 && position < text_.length()) {
    const auto run = visibility_.runAt(position);
    const bool visible = text::isVisible(run.value, view);
    const Position step = visible ? std::min(n, run.to - position) : run.to - position;
    position += step;
    if (visible) n -= step;
  }
  return position;
}

}  // namespace pluvo::document
