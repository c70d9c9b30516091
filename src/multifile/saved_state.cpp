#include "saved_state.h"

#include "host_faults.h"

namespace pluvo::multifile {

bool isSaved(word::Document& document) {
  bool saved = false;
  faultOf([&] { saved = document.Saved(); });
  return saved;
}

void keepSaved(word::Document& document) {
  faultOf([&] {
    if (!document.Saved()) document.Saved(true);
  });
}

}  // namespace pluvo::multifile
