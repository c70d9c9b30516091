#pragma once

#include "new_tables.h"

#include <vector>

namespace pluvo::doc {

/// Takes comments out of the tables beside those of their marks and texts: what they reply to, and the
/// bookmarks of the commented text. `gone` tells of each comment whether it goes.
void removeComments(const std::vector<bool>& gone, NewTables& tables);

}  // namespace pluvo::doc
