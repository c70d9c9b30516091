#pragma once

#include "base/bytes.h"

#include <map>
#include <string>

namespace pluvo::docx {

/// The faults of a Word document as a package, each with how often it occurs. Elements stand where the schema
/// does not want them; markers or fields are out of balance. Ids are given twice, references lead nowhere, or
/// blanks would be lost. Uses nothing of the room it checks.
using Faults = std::map<std::string, int>;
Faults faultsOf(const base::Bytes& document);

/// The kinds of fault that the second has and the first has not: what an edit made worse. (A run with a fault
/// of its own that an edit divides has it twice.)
std::string worsened(const Faults& before, const Faults& after);

/// The controls that say something of their text that an edit of it has made untrue.
std::string valuesDenied(const base::Bytes& before, const base::Bytes& after);

}  // namespace pluvo::docx
