#pragma once

#include "word_com/application.h"

namespace pluvo::component {

/// The user's settings in HKEY_CURRENT_USER\Software\PLUVO, as numbers. `Careful` is 1. `Log` is 1, or 2 with
/// texts of documents; the environment's PLUVO_LOG means the same. A value that is not set counts as 0.
word_com::Manner mannerOfUser();

}  // namespace pluvo::component
