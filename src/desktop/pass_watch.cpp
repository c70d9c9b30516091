#include "pass_watch.h"

#include <utility>

namespace pluvo::desktop {

void PassWatch::begins() {
  refused_ = false;
  run().begins();
  work_.inWindow([this] { begun(); });
}

engine::PassObserver::Next PassWatch::operated(const engine::Block& block, const errors::Fault* refusal) {
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

engine::PassObserver::Next PassWatch::goesOn(Next ofRun) {
  comesOn();
  return run_ == nullptr && work_.cancels() > 0 ? Next::stop : ofRun;
}

}  // namespace pluvo::desktop
