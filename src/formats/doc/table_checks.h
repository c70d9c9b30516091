#pragma once

#include "defects.h"
#include "page_checks.h"
#include "walker.h"
#include "word_file.h"

#include <vector>

namespace pluvo::doc {

/// Checks the tables that name places in the text: their order, and the characters at the places. Tables that
/// belong together must be of one length. The marks of fields are those in the text, from front to back.
void checkTables(const Text& text, const PageFacts& facts, const std::vector<FieldMark>& fieldMarks,
                 Defects& defects);

}  // namespace pluvo::doc
