#pragma once

#include "departed.h"
#include "package.h"
#include "xml/encoding.h"

#include <map>
#include <string>

namespace pluvo::docx {

/// A part with new contents.
struct ChangedPart {
  std::string utf8;
  xml::Encoding encoding;
};
/// By their names in the package.
using ChangedParts = std::map<std::string, ChangedPart>;

/// Takes from the parts of notes and comments, as they are changed so far, those that went with their
/// references. What other parts say of a comment that goes, goes too.
void removeDeparted(const Package& package, const DepartedNotes& notes, ChangedParts& changed);

}  // namespace pluvo::docx
