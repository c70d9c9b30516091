#include "saved_state.h"

#include "host_faults.h"

namespace pluvo::multifile {

bool isSaved(word::Document& document) {
  bool saved = false;
  attempt([&] { saved = document.Saved(); });
  return saved;
}

void keepSaved(word::Document& document) {
  attempt([&] {
    if (!document.Saved()) document.Saved(true);
  });
}

}  // namespace pluvo::multifile
