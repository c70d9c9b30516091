#include "pass_watch.h"

#include <utility>

namespace pluvo::desktop {

void PassWatch::begins() {
  takenBack_ = false;
  refused_ = false;
  begun();
}

engine::PassObserver::Answer PassWatch::operated(const engine::Block&, const errors::Fault* refusal) {
  const bool asks = refusal != nullptr && engine_ != nullptr && !engine_->ConfirmEachOperationsetting();
  if (asks && !std::exchange(refused_, true) && !goesOnAfterRefusal()) return stop();
  return breathe();
}

engine::PassObserver::Answer PassWatch::breathe() {
  working_.breathe();
  return working_.cancels() < (runsOverFiles() ? 2 : 1) ? Answer::goOn : stop();
}

/// Of a document that is saved at once, all changes are made or none.
engine::PassObserver::Answer PassWatch::stop() {
  if (runsOverFiles() && !std::exchange(takenBack_, true)) takeBack();
  return Answer::stop;
}

}  // namespace pluvo::desktop
