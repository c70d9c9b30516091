#include "pass_watch.h"

#include <utility>

namespace pluvo::desktop {

void PassWatch::begins() {
  takenBack_ = false;
  begun();
}

engine::PassObserver::Answer PassWatch::breathe() {
  working_.breathe();
  const bool files = engine_ != nullptr && engine_->MultiFileRun();
  if (working_.cancels() < (files ? 2 : 1)) return Answer::goOn;
  if (files && !std::exchange(takenBack_, true)) takeBack();
  return Answer::stop;
}

}  // namespace pluvo::desktop
