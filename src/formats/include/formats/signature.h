#pragma once

#include "base/bytes.h"

#include <optional>
#include <string_view>

namespace pluvo::formats {

/// The kinds of file that their first bytes tell.
enum class Signature { zip, compoundFile, rtf, pdf, picture, archive, program };

std::optional<Signature> signatureOf(base::ByteSpan bytes);

/// For a sentence: "a PDF".
std::string_view describe(Signature signature);

/// Whether files of that kind usually have names with the extension.
bool goesWith(Signature signature, std::string_view extension);

}  // namespace pluvo::formats
