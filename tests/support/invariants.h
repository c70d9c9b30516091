#pragma once

#include "document/story.h"

#include <string>

namespace pluvo::notation {

/// What is wrong with a document in memory: maps out of step with the text, fields out of balance or shown in
/// the wrong view, tables whose cells and rows do not nest, text that runs into a table, no final paragraph
/// mark. Empty when all is well.
std::string damageOf(const document::Story& model);

}  // namespace pluvo::notation
