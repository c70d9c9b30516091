#pragma once

#include "base/bytes.h"

#include <string>

namespace pluvo::docx {

/// The text of a file that a document takes in when it is opened. The file is a web page (its pictures may be
/// in the same file), rich text, or plain text. It is read for a search only, so all markup is dropped.
std::u16string importedText(base::ByteSpan file);

}  // namespace pluvo::docx
