#pragma once

#include "word_com/application.h"

namespace pluvo::component {

/// What the user has set in HKEY_CURRENT_USER\Software\PLUVO, as numbers: `Careful` 1; `Log` 1, or 2 with
/// texts of documents, for which the environment's PLUVO_LOG stands as well. A value that is not set counts
/// as 0.
word_com::Manner mannerOfUser();

}  // namespace pluvo::component
