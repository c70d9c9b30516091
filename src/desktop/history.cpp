#include "history.h"

namespace pluvo::desktop {

void History::keep(Snapshot before) {
  if (undo_.size() == kMost) undo_.erase(undo_.begin());
  undo_.push_back(std::move(before));
  redo_.clear();
  changed_ = true;
}

void History::move(document::Document& document, Snapshots& from, Snapshots& to) {
  changed_ = false;
  Snapshot snapshot = std::move(from.back());
  from.pop_back();
  to.push_back(document.snapshot());
  document.restore(std::move(snapshot));
}

}  // namespace pluvo::desktop
