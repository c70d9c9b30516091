#include "pass_watch.h"

#include <utility>

namespace pluvo::desktop {

void PassWatch::begins() {
  refused_ = false;
  story_ = 0;
  blocks_.reset();
  if (run_ == nullptr) blocks_.emplace();
  run().begins();
  work_.inWindow([this] { begun(); });
}

void PassWatch::enters(std::int32_t story) {
  story_ = story;
  run().enters(story);
}

engine::PassObserver::Next PassWatch::operated(const engine::Block& block, const errors::Fault* refusal) {
  keep(block);
  const Next ofRun = run().operated(block, refusal);
  const bool asks = refusal != nullptr && engine_ != nullptr && !engine_->ConfirmEachOperationsetting();
  if (asks && !std::exchange(refused_, true)) {
    bool goesOnNow = true;
    work_.inWindow([&] {
      goesOnNow = goesOnAfterRefusal();
      if (!goesOnNow && run_ != nullptr) takeBack();
    });
    if (!goesOnNow) return Next::stop;
  }
  return goesOn(ofRun);
}

engine::PassObserver::Next PassWatch::skipped(const engine::Block& block) {
  keep(block);
  return goesOn(run().skipped(block));
}

/// Later blocks stand after this one, so that it stays where it is now.
void PassWatch::keep(const engine::Block& block) {
  if (blocks_) blocks_->push_back({story_, {block.whole.Start(), block.whole.End()}});
}

engine::PassObserver::Next PassWatch::goesOn(Next ofRun) {
  comesOn();
  return run_ == nullptr && work_.cancels() > 0 ? Next::stop : ofRun;
}

}  // namespace pluvo::desktop
