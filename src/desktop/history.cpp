#include "history.h"

namespace pluvo::desktop {

void History::keep(Snapshot before) {
  if (undo_.size() == kMost) undo_.erase(undo_.begin());
  undo_.push_back(std::move(before));
  redo_.clear();
  changed_ = true;
}

History::Snapshot History::take(Way way) {
  changed_ = false;
  Snapshot state = std::move(states(way).back());
  states(way).pop_back();
  return state;
}

}  // namespace pluvo::desktop
