#include "history.h"

#include <utility>

namespace pluvo::desktop {

void History::keep(const model::Model& model) {
  if (!std::exchange(awaited_, false)) return;
  if (undo_.size() == kMost) undo_.erase(undo_.begin());
  undo_.push_back(model.snapshot());
  redo_.clear();
  changed_ = true;
}

void History::move(model::Model& model, Snapshots& from, Snapshots& to) {
  awaited_ = false;
  changed_ = false;
  model::Model::Snapshot snapshot = std::move(from.back());
  from.pop_back();
  to.push_back(model.snapshot());
  model.restore(std::move(snapshot));
}

}  // namespace pluvo::desktop
