#include "pass_watch.h"

#include <utility>

namespace pluvo::desktop {

void PassWatch::begins() {
  refused_ = false;
  run().begins();
  begun();
}

engine::PassObserver::Answer PassWatch::operated(const engine::Block& block, const errors::Fault* refusal) {
  const Answer ofRun = run().operated(block, refusal);
  const bool asks = refusal != nullptr && engine_ != nullptr && !engine_->ConfirmEachOperationsetting();
  if (asks && !std::exchange(refused_, true) && !goesOnAfterRefusal()) {
    if (run_ != nullptr) takeBack();
    return Answer::stop;
  }
  return breathe(ofRun);
}

engine::PassObserver::Answer PassWatch::breathe(Answer ofRun) {
  working_.breathe();
  return run_ == nullptr && working_.cancels() > 0 ? Answer::stop : ofRun;
}

}  // namespace pluvo::desktop
