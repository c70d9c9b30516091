#pragma once

#include "base/bytes.h"
#include "names.h"
#include "survey.h"

#include <optional>

namespace pluvo::plain {

/// Tells the encoding of a text that is not UTF-8 or UTF-16 from how it reads. Every byte has a meaning in
/// the answer. Where what there is to go by is too little, or contradicts itself, there is none.
std::optional<Named> guessed(base::ByteSpan bytes, const Survey& survey);

}  // namespace pluvo::plain
