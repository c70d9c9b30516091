#include "view/changes.h"

#include "block_finder.h"
#include "edits.h"

#include <utility>

namespace pluvo::view {

struct ChangeLog::Noted {
  Edits edits;
  Edits touched;  ///< the same, and where only the highlight is another
};

ChangeLog::ChangeLog(const document::Document& document)
    : document_(document), mainText_(std::make_unique<BlockFinder>(document.mainText())) {}

ChangeLog::~ChangeLog() = default;

const std::vector<Block>& ChangeLog::blocks() const { return mainText_->blocks(); }

ChangeLog::Noted& ChangeLog::of(std::size_t story) {
  std::unique_ptr<Noted>& noted = noted_[story];
  if (!noted) noted = std::make_unique<Noted>();
  return *noted;
}

void ChangeLog::replaced(std::size_t story, Span span, Position newLength) {
  Noted& noted = of(story);
  noted.edits.add(span, newLength);
  noted.touched.add(span, newLength);
}

void ChangeLog::highlighted(std::size_t story, Span span) { of(story).touched.add(span, span.length()); }

/// Another story than main text is short, as a rule: it is looked through anew.
Changes ChangeLog::take() {
  Changes changes;
  for (const auto& [number, noted] : std::exchange(noted_, {})) {
    StoryChange change{number, noted->touched.exchanges(), {}};
    const std::vector<Exchange> edits = noted->edits.exchanges();
    if (number == 0) {
      change.patches = mainText_->takeIn(edits);
    } else if (!edits.empty()) {
      const document::Story& story = document_.story(number);
      const Position before = story.length() - (edits.back().come.to - edits.back().gone.to);
      change.patches.push_back({{{0, before}, {0, story.length()}}, BlockFinder(story).blocks()});
    }
    changes.push_back(std::move(change));
  }
  return changes;
}

}  // namespace pluvo::view
