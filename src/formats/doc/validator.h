#pragma once

#include "base/bytes.h"

#include <string>

namespace pluvo::doc {

/// The streams of a document that edits change.
struct EditedStreams {
  base::ByteSpan document;
  base::ByteSpan tables;
  base::ByteSpan data;
};

/// The first defect of an edited document that its original lacked: "a piece lies ...". Empty where there is
/// none. Each kind of defect may be there as often as it was.
///
/// It checks the information block, the pieces, the pages of formatting and the tables that name places in
/// the text. Bytes of the original WordDocument and Data streams must stay what and where they were. Only
/// unused ones beside the information block may become zeros.
std::string firstNewDefect(const EditedStreams& original, const EditedStreams& edited);

}  // namespace pluvo::doc
