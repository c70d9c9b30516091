#pragma once

#include "document/story.h"

#include <string>

namespace pluvo::notation {

/// The faults of a document in memory. Maps are out of step with the text, fields out of balance or shown in
/// the wrong view, or the final paragraph mark is missing. Tables whose cells and rows do not nest, and text
/// that runs into a table, are faults as well. Empty when all is well.
std::string damageOf(const document::Story& model);

}  // namespace pluvo::notation
