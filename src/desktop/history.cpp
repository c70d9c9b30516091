#include "history.h"

#include <utility>

namespace pluvo::desktop {

void History::keep(const document::Model& model) {
  if (!std::exchange(awaited_, false)) return;
  if (undo_.size() == kMost) undo_.erase(undo_.begin());
  undo_.push_back(model.snapshot());
  redo_.clear();
  changed_ = true;
}

void History::move(document::Model& model, Snapshots& from, Snapshots& to) {
  awaited_ = false;
  changed_ = false;
  document::Model::Snapshot snapshot = std::move(from.back());
  from.pop_back();
  to.push_back(model.snapshot());
  model.restore(std::move(snapshot));
}

}  // namespace pluvo::desktop
