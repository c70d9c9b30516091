#pragma once

#include "base/bytes.h"

#include <string>

namespace pluvo::docx {

/// The text of a file that a document takes in when it is opened: a web page, also with its pictures in one
/// file, rich text, or plain text. It is read for a search only, so all markup is dropped.
std::u16string importedText(base::ByteSpan file);

}  // namespace pluvo::docx
