#pragma once

#include "new_tables.h"

#include <vector>

namespace pluvo::doc {

/// Takes comments out of the tables that stand beside those of their marks and texts: what they reply to, and
/// the bookmarks of the text they are for. `gone` tells of each comment whether it goes.
void removeComments(const std::vector<bool>& gone, NewTables& tables);

}  // namespace pluvo::doc
