#pragma once

#include <string>

namespace pluvo::desktop {

/// Where things lie, as the desktop's conventions have it; paths without a separator at the end.
struct Places {
  std::u16string documents;  ///< the user's documents
  /// The folder that stands for the word processor's user templates: the user's data of all programs. The
  /// dialog keeps its own in "PLUVO" in there.
  std::u16string templates;
  std::u16string component;  ///< where the program lies, and its documents
};

Places machinePlaces();

}  // namespace pluvo::desktop
