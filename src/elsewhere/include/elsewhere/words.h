#pragma once

#include "elsewhere/elsewhere.h"

#include <cstdint>
#include <string>

namespace pluvo::elsewhere {

/// Blocks in all stories, and occurrences of the beginning in all places that no request can reach.
std::int64_t blocksIn(const Elsewhere& found);
std::int64_t occurrencesIn(const Elsewhere& found);

/// Whether the user has to look: something is counted, or a part could not be read and may hold anything.
bool needsCare(const Elsewhere& found);

// Parts of sentences, for the user; empty where there is nothing to say.
/// "2 blocks in headers and 1 in footers"
std::string blocksInWords(const Elsewhere& found);
/// "hidden text (1) and document properties (2)"
std::string occurrencesInWords(const Elsewhere& found);
/// "pictures and macros"
std::string notLookedIntoInWords(const Elsewhere& found);
/// Which parts could not be read, and why, in whole sentences.
std::string damageInWords(const Elsewhere& found);
/// All of it but the parts not looked into, as "2 blocks in headers; the beginning also occurs in hidden text
/// (1)".
std::string inWords(const Elsewhere& found);

}  // namespace pluvo::elsewhere
