#include "history.h"

#include <utility>

namespace pluvo::desktop {

void History::keep(const document::Document& document) {
  if (!std::exchange(awaited_, false)) return;
  if (undo_.size() == kMost) undo_.erase(undo_.begin());
  undo_.push_back(document.snapshot());
  redo_.clear();
  changed_ = true;
}

void History::move(document::Document& document, Snapshots& from, Snapshots& to) {
  awaited_ = false;
  changed_ = false;
  document::Document::Snapshot snapshot = std::move(from.back());
  from.pop_back();
  to.push_back(document.snapshot());
  document.restore(std::move(snapshot));
}

}  // namespace pluvo::desktop
