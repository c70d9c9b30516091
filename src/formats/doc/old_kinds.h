#pragma once

#include "base/bytes.h"
#include "cfb/compound_file.h"
#include "errors/document_error.h"

#include <optional>
#include <string_view>

namespace pluvo::doc {

/// The kind of a file with the name .doc that is no compound file and is not read here: "a Word 2 document".
/// Kinds without a signature count only under such a name.
std::optional<std::string_view> otherKindOf(base::ByteSpan bytes, std::string_view extension);

errors::DocumentError unsupportedKind(std::string_view kind);

/// Of a compound file without a document of Word's.
errors::DocumentError notWord(const cfb::CompoundFile& file);
/// Of a document whose information block is of an earlier version.
errors::DocumentError beforeWord97(base::ByteSpan document);

}  // namespace pluvo::doc
